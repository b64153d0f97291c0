#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Root.h>
#include <tessel/ValueString.h>

#include <string_view>

namespace tsl
{

/// The data that shapes a value's text: a format with `${...}` replacements, a null format for null
/// values, and a prefix and a postfix around either. Each value class has a layout class of its own.
///
///     tsl::ValueFloatConverterLayout oLayout("${%.2f}");
///     oLayout.SetPostfix(" m");
///     tsl::ValueString sText;
///     oWidth.GetConverter().ConvertToText(oWidth, sText, oLayout);
///
/// The syntax of a format is not checked here; ValueConverter reports a bad one when it is used.
///
/// Threads: any number of threads may convert with a layout as long as nobody changes it. Ownership: a
/// layout copies its texts; the caller keeps it for the time of a conversion.
class TSL_EXPORT ValueConverterLayout
    : public Described<ValueConverterLayout, Root, ClassDescription::eAbstract>
{
public:
    ~ValueConverterLayout() override = default;

    /// Whether the layout accepts these texts. The base accepts all.
    virtual bool VerifyFormat(ValueString const & sFormat, ValueString const & sNullFormat) const;

    /// The layout for a value inside the value that this layout is for; the base returns itself.
    virtual ValueConverterLayout const & GetSuitableLayout(Value const & oValue) const;

    /// The references hold as long as the layout.
    ValueString const & GetFormat() const { return m_sFormat; }
    ValueString const & GetNullFormat() const { return m_sNullFormat; }
    ValueString const & GetPrefix() const { return m_sPrefix; }
    ValueString const & GetPostfix() const { return m_sPostfix; }

    /// Sets the texts, with effect from the next conversion. False if VerifyFormat refuses them; nothing
    /// changes then.
    bool SetFormat(ValueString const & sFormat);
    bool SetFormat(ValueString const & sFormat, ValueString const & sNullFormat);

    /// The texts around the format and the null format, both empty at first.
    void SetPrefix(ValueString const & sPrefix) { m_sPrefix = sPrefix; }
    void SetPostfix(ValueString const & sPostfix) { m_sPostfix = sPostfix; }

protected:
    /// Without a format; a layout cannot convert until it has one. The null format is "NULL".
    ValueConverterLayout() = default;

    /// A format that VerifyFormat refuses is an assertion failure.
    explicit ValueConverterLayout(ValueString const & sFormat);
    ValueConverterLayout(ValueString const & sFormat, ValueString const & sNullFormat);

    /// Copies all texts.
    ValueConverterLayout(ValueConverterLayout const & oSource) = default;
    ValueConverterLayout & operator=(ValueConverterLayout const & oSource) = default;

    void DoCopy(Root const & oSource) override;

private:
    friend struct PlainNumber;

    /// How to follow a format that is one plain number and literal text, parsed when the format is set (R08).
    /// Any other format is parsed when it is used.
    struct Private
    {
        TSL_HIDDEN static Private MakePlan(std::string_view sFormat);

        char cConversion = '\0'; ///< 'd' for `%d`, 'f' for `%f`, `%.2f` and so on; 0 for any other kind
        int iPrecision = 0;      ///< the decimal places for 'f'
        std::size_t iStart = 0;  ///< of the replacement
        std::size_t iEnd = 0;    ///< of the replacement
    };

    ValueString m_sPrefix{""};
    ValueString m_sPostfix{""};
    ValueString m_sNullFormat{"NULL"};
    ValueString m_sFormat;
    Private m_oPlan;
};

template<>
TSL_EXPORT ClassDescription const &
Described<ValueConverterLayout, Root, ClassDescription::eAbstract>::GetStaticClassDesc();

} // namespace tsl
