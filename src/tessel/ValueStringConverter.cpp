#include <tessel/ValueStringConverter.h>

#include "LastingObject.h"
#include "ReplacementFormat.h"
#include "ValueCast.h"

#include <tessel/Assertion.h>

namespace tsl
{

ClassDescription const & ValueStringConverterLayout::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & ValueStringConverterLayout::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<ValueStringConverterLayout>(
        &ValueConverterLayout::GetStaticClassDesc(), ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

Root * ValueStringConverterLayout::CreateNew()
{
    return new ValueStringConverterLayout;
}

ValueStringConverterLayout::ValueStringConverterLayout() : ValueConverterLayout("${%s}") {}

ClassDescription const & ValueStringConverter::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & ValueStringConverter::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<ValueStringConverter>(
        &ValueConverter::GetStaticClassDesc(), ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

Root * ValueStringConverter::CreateNew()
{
    return new ValueStringConverter;
}

ValueConverterLayout const & ValueStringConverter::GetDefaultLayout() const
{
    return LastingObject<ValueStringConverterLayout>();
}

bool ValueStringConverter::DoGetReplacement(Value const & oValue, ValueString const & sIdentifier,
    ValueString & sOut, ValueConverterLayout const &) const
{
    ReplacementFormat::AppendText(sOut, sIdentifier, CastValue<ValueString const>(oValue).c_str());
    return true;
}

Result ValueStringConverter::DoConvertReplacement(
    ValueString &, Value &, ValueConverterLayout const &, ValueString const &) const
{
    XAssertionFailed("0", "not implemented");
}

} // namespace tsl
