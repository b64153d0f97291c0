#include <tessel/ValueConverterLayout.h>

#include "LayoutFormat.h"
#include "ReplacementFormat.h"

#include <tessel/Assertion.h>

#include <utility>

namespace tsl
{

[[noreturn]] static void FailFormat(char const * sClassName, ValueString const & sFormat)
{
    String sText;
    sText << sClassName << "::" << sClassName << " : Ungültiger Formatstring! String : \""
          << (sFormat.IsNull() ? "" : sFormat.c_str()) << '"';
    XAssertionFailed("false", sText);
}

ValueConverterLayout::ValueConverterLayout(ValueString const & sFormat)
{
    SetFormatOrFail(*this, sFormat, "ValueConverterLayout");
}

ValueConverterLayout::ValueConverterLayout(ValueString const & sFormat, ValueString const & sNullFormat)
{
    if (!SetFormat(sFormat, sNullFormat))
        FailFormat("ValueConverterLayout", sFormat);
}

ValueConverterLayout::Private ValueConverterLayout::Private::MakePlan(std::string_view sFormat)
{
    Private oPlan;
    Replacement const oOnly = FindReplacement(sFormat, 0);
    if (!oOnly.IsFound() || !oOnly.IsClosed() || FindReplacement(sFormat, oOnly.iEnd).IsFound())
        return oPlan;

    std::string_view const sIdentifier = oOnly.GetIdentifier(sFormat);
    oPlan.iPrecision = ReplacementFormat::GetBarePrecision(sIdentifier);
    if (oPlan.iPrecision >= 0)
        oPlan.cConversion = 'f';
    else if (sIdentifier == "%d")
        oPlan.cConversion = 'd';
    oPlan.iStart = oOnly.iStart;
    oPlan.iEnd = oOnly.iEnd + 1;
    return oPlan;
}

template<>
constexpr ClassSource CLASS_SOURCE<ValueConverterLayout>{};
template<>
ClassDescription const &
Described<ValueConverterLayout, Root, ClassDescription::eAbstract>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

void ValueConverterLayout::DoCopy(Root const & oSource)
{
    *this = static_cast<ValueConverterLayout const &>(oSource);
}

bool ValueConverterLayout::VerifyFormat(ValueString const &, ValueString const &) const
{
    return true;
}
ValueConverterLayout const & ValueConverterLayout::GetSuitableLayout(Value const &) const
{
    return *this;
}

bool ValueConverterLayout::SetFormat(ValueString const & sFormat)
{
    return SetFormat(sFormat, m_sNullFormat);
}

bool ValueConverterLayout::SetFormat(ValueString const & sFormat, ValueString const & sNullFormat)
{
    if (!VerifyFormat(sFormat, sNullFormat))
        return false;

    // Either text may be the layout's own other one.
    ValueString sNewNullFormat(sNullFormat);
    m_sFormat = sFormat;
    m_sNullFormat = std::move(sNewNullFormat);
    m_oPlan = m_sFormat.IsNull() ? Private() : Private::MakePlan(m_sFormat.s_str());
    return true;
}

void SetFormatOrFail(ValueConverterLayout & oLayout, ValueString const & sFormat, char const * sClassName)
{
    if (!oLayout.SetFormat(sFormat))
        FailFormat(sClassName, sFormat);
}

} // namespace tsl
