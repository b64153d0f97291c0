#include <tessel/StringFormator.h>

#include <tessel/String.h>

namespace tsl
{

template<>
constexpr ClassSource CLASS_SOURCE<StringFormator>{};
template<>
ClassDescription const & Described<StringFormator, Root>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

void StringFormator::Format(String const & sSource, String & sTarget) const
{
    sTarget = sSource;
    if (m_iFlags & eUpper)
        sTarget.Upper();
    if (m_iFlags & eLower)
        sTarget.Lower();
    if (m_iFlags & eTrimLeft)
        sTarget.TrimLeft();
    if (m_iFlags & eTrimRight)
        sTarget.TrimRight();
}

void StringFormator::DoCopy(Root const & oSource)
{
    *this = static_cast<StringFormator const &>(oSource);
}

} // namespace tsl
