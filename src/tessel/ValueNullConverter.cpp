#include <tessel/ValueNullConverter.h>

#include "LastingObject.h"

#include <tessel/Assertion.h>

namespace tsl
{

ClassDescription const & ValueNullConverterLayout::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & ValueNullConverterLayout::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<ValueNullConverterLayout>(
        &ValueConverterLayout::GetStaticClassDesc(), ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

Root * ValueNullConverterLayout::CreateNew()
{
    return new ValueNullConverterLayout;
}

ValueNullConverterLayout::ValueNullConverterLayout() : ValueConverterLayout("") {}

ClassDescription const & ValueNullConverter::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & ValueNullConverter::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<ValueNullConverter>(
        &ValueConverter::GetStaticClassDesc(), ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

Root * ValueNullConverter::CreateNew()
{
    return new ValueNullConverter;
}

ValueConverterLayout const & ValueNullConverter::GetDefaultLayout() const
{
    return LastingObject<ValueNullConverterLayout>();
}

bool ValueNullConverter::DoGetReplacement(
    Value const &, ValueString const &, ValueString &, ValueConverterLayout const &) const
{
    return false;
}

Result ValueNullConverter::DoConvertReplacement(
    ValueString &, Value &, ValueConverterLayout const &, ValueString const &) const
{
    XAssertionFailed("0", "not implemented");
}

} // namespace tsl
