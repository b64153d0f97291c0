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
/// A format is literal text with replacements. A replacement opens with `${`, closes at the next `}` and
/// holds an identifier of at least one byte; there is no escape and no nesting. For every value
/// `${clsname}`, `${clsid}` (not in the format of a plain layout) and `${null}` are known; what else an
/// identifier means is settled by the value's own converter. The text that stands for a replacement is not
/// scanned again, and an identifier that nobody knows stays in the text as it stands.
///
/// One converter serves all values of a class: use Value::GetConverter. A value of another class is an
/// assertion failure as soon as the converter has to look at it. Any number of threads may convert at
/// once, as long as the value, text and layout of a call are not changed meanwhile.
class TSL_EXPORT ValueConverter : public Described<ValueConverter, Root, ClassDescription::eAbstract>
{
public:
    ValueConverter(ValueConverter const &) = default;
    ValueConverter & operator=(ValueConverter const &) = default;

    ~ValueConverter() override = default;

    /// The shared layout of the value class.
    virtual ValueConverterLayout const & GetDefaultLayout() const = 0;

    /// Appends the value's text to sText. A replacement without its closing `}` or without identifier, a
    /// layout without format, and `${clsid}` in a plain layout's format are assertion failures; the prefix
    /// may then have been appended, and nothing else. The value may be sText itself.
    void ConvertToText(Value const & oValue, ValueString & sText, ValueConverterLayout const & oLayout) const;
    void ConvertToText(Value const & oValue, ValueString & sText) const;

    /// Sets the value from the text, which must not be null. A text that is the null format as a whole
    /// makes the value null. Code 2 if the text does not follow the format, else the failure of the
    /// value's own parser; the value keeps what was read before the failure.
    ///
    /// What stands in front of a replacement is compared with the head of the format, literal text behind
    /// the last replacement is never read, and the standard identifiers can be written but not read back.
    [[nodiscard]] Result ConvertFromText(
        ValueString const & sText, Value & oValue, ValueConverterLayout const & oLayout) const;
    [[nodiscard]] Result ConvertFromText(ValueString const & sText, Value & oValue) const
    {
        return ConvertFromText(sText, oValue, GetDefaultLayout());
    }

protected:
    ValueConverter() = default;

    void DoCopy(Root const & oSource) override;

    /// Appends the replacement for an identifier: a standard one, or what DoGetReplacement makes of it.
    /// False if nobody knows the identifier.
    bool GetReplacement(Value const & oValue, ValueString const & sIdentifier, ValueString & sOut,
        ValueConverterLayout const & oLayout) const;

    /// Reads the value for an identifier from the front of sText and cuts off what it has read.
    [[nodiscard]] Result ConvertReplacement(ValueString & sText, Value & oValue,
        ValueConverterLayout const & oLayout, ValueString const & sIdentifier) const;

    /// The value class's part of GetReplacement. sOut is null at first.
    virtual bool DoGetReplacement(Value const & oValue, ValueString const & sIdentifier, ValueString & sOut,
        ValueConverterLayout const & oLayout) const = 0;

    /// The value class's part of ConvertReplacement; it is asked behind a standard identifier, too.
    virtual Result DoConvertReplacement(ValueString & sText, Value & oValue,
        ValueConverterLayout const & oLayout, ValueString const & sIdentifier) const = 0;

private:
    struct Private;
};

extern template ClassDescription const &
Described<ValueConverter, Root, ClassDescription::eAbstract>::GetStaticClassDesc();

} // namespace tsl
