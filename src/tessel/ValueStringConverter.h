#pragma once

#include <tessel/Export.h>
#include <tessel/ValueConverter.h>
#include <tessel/ValueConverterLayout.h>

namespace tsl
{

/// The layout of a ValueString; the format is "${%s}".
class TSL_EXPORT ValueStringConverterLayout : public ValueConverterLayout
{
public:
    ValueStringConverterLayout();

    ClassDescription const & GetClassDesc() const override;
    static ClassDescription const & GetStaticClassDesc();
    static Root * CreateNew();
};

/// The text form of ValueString. A ValueString cannot be read from text, except for the null format.
///
/// Every identifier that is a printf format for a text is taken: text, `%%`, and at most one `%s` with
/// flags, width and precision of at most 3,998. Any other is an assertion failure that names the format,
/// and so are a null value and a replacement of more than 3,998 bytes. Reading a replacement is an
/// assertion failure.
class TSL_EXPORT ValueStringConverter : public ValueConverter
{
public:
    ClassDescription const & GetClassDesc() const override;
    static ClassDescription const & GetStaticClassDesc();
    static Root * CreateNew();

    ValueConverterLayout const & GetDefaultLayout() const override;

protected:
    bool DoGetReplacement(Value const & oValue, ValueString const & sIdentifier, ValueString & sOut,
        ValueConverterLayout const & oLayout) const override;
    Result DoConvertReplacement(ValueString & sText, Value & oValue, ValueConverterLayout const & oLayout,
        ValueString const & sIdentifier) const override;
};

} // namespace tsl
