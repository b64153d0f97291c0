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

NamedValueConverterLayout::NamedValueConverterLayout(ValueString const & sFormat) : Described(sFormat) {}

NamedValueConverterLayout::NamedValueConverterLayout(
    ValueString const & sFormat, ValueString const & sNullFormat)
    : Described(sFormat, sNullFormat)
{
}

template<>
constexpr ClassSource CLASS_SOURCE<NamedValueConverterLayout>{};
template<>
ClassDescription const &
Described<NamedValueConverterLayout, ValueConverterLayoutCollection>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

template<>
constexpr ClassSource CLASS_SOURCE<NamedValueConverter>{};
template<>
ClassDescription const & Described<NamedValueConverter, ValueConverter>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
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
