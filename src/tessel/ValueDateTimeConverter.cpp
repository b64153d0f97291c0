#include <tessel/ValueDateTimeConverter.h>

#include "LastingObject.h"
#include "LayoutFormat.h"

namespace tsl
{

ValueDateTimeConverterLayout::ValueDateTimeConverterLayout() : ValueDateTimeConverterLayout("${%d}") {}

ValueDateTimeConverterLayout::ValueDateTimeConverterLayout(ValueString const & sFormat)
{
    DemandFormat(*this, sFormat, "ValueDateTimeConverterLayout");
}

ClassDescription const & ValueDateTimeConverterLayout::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & ValueDateTimeConverterLayout::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<ValueDateTimeConverterLayout>(
        &ValueConverterLayout::GetStaticClassDesc(), ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

Root * ValueDateTimeConverterLayout::CreateNew()
{
    return new ValueDateTimeConverterLayout;
}

ClassDescription const & ValueDateTimeConverter::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & ValueDateTimeConverter::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<ValueDateTimeConverter>(
        &ValueConverter::GetStaticClassDesc(), ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

Root * ValueDateTimeConverter::CreateNew()
{
    return new ValueDateTimeConverter;
}

ValueConverterLayout const & ValueDateTimeConverter::GetDefaultLayout() const
{
    return LastingObject<ValueDateTimeConverterLayout>();
}

bool ValueDateTimeConverter::DoGetReplacement(
    Value const &, ValueString const &, ValueString &, ValueConverterLayout const &) const
{
    return true;
}

Result ValueDateTimeConverter::DoConvertReplacement(
    ValueString &, Value &, ValueConverterLayout const &, ValueString const &) const
{
    return MakeResult(ERR::eBadData, "sIdentifier unknown");
}

} // namespace tsl
