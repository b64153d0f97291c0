#include <tessel/ValueNullConverter.h>

#include "LastingObject.h"

#include <tessel/Assertion.h>

namespace tsl
{

template<>
constexpr ClassSource CLASS_SOURCE<ValueNullConverterLayout>{};
template<>
ClassDescription const & Described<ValueNullConverterLayout, ValueConverterLayout>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

// Out of line, so that only the library has the vtable and the type record of the class.
ValueNullConverterLayout::~ValueNullConverterLayout() = default;

ValueNullConverterLayout::ValueNullConverterLayout() : Described("") {}

template<>
constexpr ClassSource CLASS_SOURCE<ValueNullConverter>{};
template<>
ClassDescription const & Described<ValueNullConverter, ValueConverter>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
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
