#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Result.h>
#include <tessel/Root.h>
#include <tessel/ValueConverterLayout.h>

namespace tsl
{

/// Turns a value into text and back, driven by a layout's format.
///
///     tsl::ValueInt32 const iNumber(5);
///     tsl::ValueString sText;
///     iNumber.GetConverter().ConvertToText(iNumber, sText, tsl::ValueIntegerConverterLayout("n = ${%d}"));
///
/// A format is literal text with replacements. A replacement opens with `${`, closes at the next `}` and
/// holds an identifier of at least one byte; there is no escape and no nesting. Every value knows
/// `${clsname}`, `${clsid}` (not in the format of a plain layout) and `${null}`; its own converter defines
/// the others. The text of a replacement is not scanned again; an unknown one is copied as it is.
///
/// One converter serves all values of a class: use Value::GetConverter. A value of another class is an
/// assertion failure. Threads: any number may convert at once, as long as nobody changes the value, text
/// and layout of a call. Ownership: the library owns its converters.
class TSL_EXPORT ValueConverter : public Described<ValueConverter, Root, ClassDescription::eAbstract>
{
public:
    ValueConverter(ValueConverter const &) = default;
    ValueConverter & operator=(ValueConverter const &) = default;

    ~ValueConverter() override = default;

    /// The shared layout of the value class.
    virtual ValueConverterLayout const & GetDefaultLayout() const = 0;

    /// Appends the value's text to sText. A replacement without its closing `}` or without identifier, a
    /// layout without format, and `${clsid}` in a plain layout's format are assertion failures; only the
    /// prefix may then have been appended. The value may be sText itself.
    void ConvertToText(Value const & oValue, ValueString & sText, ValueConverterLayout const & oLayout) const;
    void ConvertToText(Value const & oValue, ValueString & sText) const;

    /// Sets the value from the text, which must not be null. A text that equals the null format makes the
    /// value null. Code 2 if the text does not follow the format, else the failure of the value's own
    /// parser; the value keeps what was read before the failure.
    ///
    /// The text in front of a replacement is compared with the head of the format, literal text after the
    /// last replacement is ignored, and the standard identifiers can be written but not read back.
    [[nodiscard]] Result ConvertFromText(
        ValueString const & sText, Value & oValue, ValueConverterLayout const & oLayout) const;
    [[nodiscard]] Result ConvertFromText(ValueString const & sText, Value & oValue) const
    {
        return ConvertFromText(sText, oValue, GetDefaultLayout());
    }

protected:
    ValueConverter() = default;

    void DoCopy(Root const & oSource) override;

    /// Appends the replacement for an identifier, standard or not. False if the identifier is unknown.
    bool GetReplacement(Value const & oValue, ValueString const & sIdentifier, ValueString & sOut,
        ValueConverterLayout const & oLayout) const;

    /// Reads the value for an identifier from the front of sText and removes its text.
    [[nodiscard]] Result ConvertReplacement(ValueString & sText, Value & oValue,
        ValueConverterLayout const & oLayout, ValueString const & sIdentifier) const;

    /// The value class's part of GetReplacement; standard identifiers do not come here. sOut is null.
    virtual bool DoGetReplacement(Value const & oValue, ValueString const & sIdentifier, ValueString & sOut,
        ValueConverterLayout const & oLayout) const = 0;

    /// The value class's part of ConvertReplacement; called after a standard identifier, too.
    virtual Result DoConvertReplacement(ValueString & sText, Value & oValue,
        ValueConverterLayout const & oLayout, ValueString const & sIdentifier) const = 0;

private:
    struct Private;
};

template<>
TSL_EXPORT ClassDescription const &
Described<ValueConverter, Root, ClassDescription::eAbstract>::GetStaticClassDesc();

} // namespace tsl
