#include <tessel/ValueStringConverter.h>

#include "LastingObject.h"
#include "LayoutFormat.h"
#include "ReplacementFormat.h"
#include "ValueCast.h"

#include <tessel/Assertion.h>

namespace tsl
{

template<>
constexpr ClassSource CLASS_SOURCE<ValueStringConverterLayout>{};
template<>
ClassDescription const & Described<ValueStringConverterLayout, ValueConverterLayout>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

// Out of line, so that only the library has the vtable and the type record of the class.
ValueStringConverterLayout::~ValueStringConverterLayout() = default;

ValueStringConverterLayout::ValueStringConverterLayout() : ValueStringConverterLayout("${%s}") {}

ValueStringConverterLayout::ValueStringConverterLayout(ValueString const & sFormat)
{
    SetFormatOrFail(*this, sFormat, "ValueStringConverterLayout");
}

template<>
constexpr ClassSource CLASS_SOURCE<ValueStringConverter>{};
template<>
ClassDescription const & Described<ValueStringConverter, ValueConverter>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
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
