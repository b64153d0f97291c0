#include <tessel/NamedValueConverter.h>

#include "LastingObject.h"
#include "ValueCast.h"

#include <tessel/Assertion.h>
#include <tessel/NamedValue.h>

namespace tsl
{

static void AppendInner(Value const & oInner, ValueString & sOut, ValueConverterLayout const & oLayout)
{
    oInner.GetConverter().ConvertToText(oInner, sOut, oLayout.GetSuitableLayout(oInner));
}

NamedValueConverterLayout::NamedValueConverterLayout() : NamedValueConverterLayout("${name} ${value}") {}

NamedValueConverterLayout::NamedValueConverterLayout(ValueString const & sFormat)
    : ValueConverterLayoutCollection(sFormat)
{
}

NamedValueConverterLayout::NamedValueConverterLayout(
    ValueString const & sFormat, ValueString const & sNullFormat)
    : ValueConverterLayoutCollection(sFormat, sNullFormat)
{
}

ClassDescription const & NamedValueConverterLayout::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & NamedValueConverterLayout::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<NamedValueConverterLayout>(
        &ValueConverterLayoutCollection::GetStaticClassDesc(), ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

Root * NamedValueConverterLayout::CreateNew()
{
    return new NamedValueConverterLayout;
}

ClassDescription const & NamedValueConverter::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & NamedValueConverter::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<NamedValueConverter>(
        &ValueConverter::GetStaticClassDesc(), ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

Root * NamedValueConverter::CreateNew()
{
    return new NamedValueConverter;
}

ValueConverterLayout const & NamedValueConverter::GetDefaultLayout() const
{
    return LastingObject<NamedValueConverterLayout>();
}

bool NamedValueConverter::DoGetReplacement(Value const & oValue, ValueString const & sIdentifier,
    ValueString & sOut, ValueConverterLayout const & oLayout) const
{
    NamedValue const & oNamed = CastValue<NamedValue const>(oValue);
    if (sIdentifier == "name")
        AppendInner(oNamed.GetName(), sOut, oLayout);
    else if (sIdentifier == "value")
        AppendInner(oNamed.GetValue(), sOut, oLayout);
    else
        return false;
    return true;
}

Result NamedValueConverter::DoConvertReplacement(
    ValueString &, Value &, ValueConverterLayout const &, ValueString const &) const
{
    XAssertionFailed("0", "not implemented");
}

} // namespace tsl
