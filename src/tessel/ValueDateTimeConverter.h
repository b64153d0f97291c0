#pragma once

#include <tessel/Export.h>
#include <tessel/ValueConverter.h>
#include <tessel/ValueConverterLayout.h>

namespace tsl
{

/// The layout of a ValueDateTime; the default format is "${%d}".
class TSL_EXPORT ValueDateTimeConverterLayout : public ValueConverterLayout
{
public:
    ValueDateTimeConverterLayout();

    /// Another format. One that SetFormat refuses is an assertion failure.
    explicit ValueDateTimeConverterLayout(ValueString const & sFormat);

    ClassDescription const & GetClassDesc() const override;
    static ClassDescription const & GetStaticClassDesc();
    static Root * CreateNew();
};

/// The text form of ValueDateTime, which shows nothing of the moment: every identifier stands for the
/// empty text. Reading a replacement fails with code 2.
class TSL_EXPORT ValueDateTimeConverter : public ValueConverter
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
