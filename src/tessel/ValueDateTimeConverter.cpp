#include <tessel/ValueDateTimeConverter.h>

#include "LastingObject.h"
#include "LayoutFormat.h"

namespace tsl
{

ValueDateTimeConverterLayout::ValueDateTimeConverterLayout() : ValueDateTimeConverterLayout("${%d}") {}

ValueDateTimeConverterLayout::ValueDateTimeConverterLayout(ValueString const & sFormat)
{
    SetFormatOrFail(*this, sFormat, "ValueDateTimeConverterLayout");
}

template<>
constexpr ClassSource CLASS_SOURCE<ValueDateTimeConverterLayout>{};
template<>
ClassDescription const & Described<ValueDateTimeConverterLayout, ValueConverterLayout>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

// Out of line, so that only the library has the vtable and the type record of the class.
ValueDateTimeConverterLayout::~ValueDateTimeConverterLayout() = default;

template<>
constexpr ClassSource CLASS_SOURCE<ValueDateTimeConverter>{};
template<>
ClassDescription const & Described<ValueDateTimeConverter, ValueConverter>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
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
