#include <tessel/ValueFloatConverter.h>

#include "FloatText.h"
#include "LastingObject.h"
#include "LayoutFormat.h"
#include "ReplacementFormat.h"
#include "ValueCast.h"

#include <tessel/ValueFloat32.h>

#include <algorithm>
#include <limits>
#include <string_view>

namespace tsl
{

namespace
{

constexpr double FLOAT_MAX = std::numeric_limits<float>::max();

} // namespace

ValueFloatConverterLayout::ValueFloatConverterLayout()
{
    UpdateFormat();
}

ValueFloatConverterLayout::ValueFloatConverterLayout(ValueString const & sFormat)
{
    SetFormatOrFail(*this, sFormat, "ValueFloatConverterLayout");
}

template<>
constexpr ClassSource CLASS_SOURCE<ValueFloatConverterLayout>{};
template<>
ClassDescription const & Described<ValueFloatConverterLayout, ValueConverterLayout>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

void ValueFloatConverterLayout::SetDecimalPlaces(ValueInt32 const & iDecimalPlaces)
{
    m_iDecimalPlaces.Set(iDecimalPlaces);
    UpdateFormat();
}

void ValueFloatConverterLayout::DoCopy(Root const & oSource)
{
    ValueConverterLayout::DoCopy(oSource);
    m_iDecimalPlaces.Set(static_cast<ValueFloatConverterLayout const &>(oSource).m_iDecimalPlaces);
}

void ValueFloatConverterLayout::UpdateFormat()
{
    String sFormat("${%f}");
    if (!m_iDecimalPlaces.IsNull())
        sFormat.Format("${%%.%df}", m_iDecimalPlaces.AsInt32());

    // A derived layout that refuses the format keeps the one that it has.
    static_cast<void>(SetFormat(sFormat));
}

ValueFloatConverter::ValueFloatConverter() = default;

template<>
constexpr ClassSource CLASS_SOURCE<ValueFloatConverter>{};
template<>
ClassDescription const & Described<ValueFloatConverter, ValueConverter>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

ValueConverterLayout const & ValueFloatConverter::GetDefaultLayout() const
{
    return LastingObject<ValueFloatConverterLayout>();
}

bool ValueFloatConverter::DoGetReplacement(Value const & oValue, ValueString const & sIdentifier,
    ValueString & sOut, ValueConverterLayout const &) const
{
    if (sIdentifier.Find('f') < 0)
        return false;

    ReplacementFormat::AppendFloat(sOut, sIdentifier, CastValue<ValueFloat32 const>(oValue).AsFloat32());
    return true;
}

Result ValueFloatConverter::DoConvertReplacement(
    ValueString & sText, Value & oValue, ValueConverterLayout const &, ValueString const & sIdentifier) const
{
    if (sIdentifier.Find('f') < 0)
        return MakeResult(ERR::eBadData, "sIdentifier unknown");

    ValueFloat32 & oTarget = CastValue<ValueFloat32>(oValue);
    std::string const & sAll = sText.s_str();
    auto const iBlanks =
        static_cast<std::size_t>(std::find_if_not(sAll.begin(), sAll.end(), String::IsSpace) - sAll.begin());
    std::string_view const sTrimmed = std::string_view(sAll).substr(iBlanks);

    FloatText::Number const oNumber = FloatText::ScanNumber(sTrimmed);
    if (oNumber.sText.empty())
        return MakeResult(
            ERR::eBadData, String("Invalid syntax. Cannot convert '") + sAll + "' to ValueFloat.");

    double const fNumber = FloatText::ReadNumber(oNumber);
    if (fNumber > FLOAT_MAX)
        return MakeResult(ERR::eOutOfRange, "Overflow. Smalest number for ValueFloat32 is FLOAT32_MAX.");
    if (fNumber < -FLOAT_MAX)
        return MakeResult(ERR::eOutOfRange, "Overflow. Biggest number for ValueFloat32 is FLOAT32_MIN.");

    oTarget = static_cast<float>(fNumber);
    sText.CutLeft(static_cast<unsigned int>(oNumber.sText.size() + iBlanks));
    sText.TrimLeft();
    return Result::Null();
}

} // namespace tsl
