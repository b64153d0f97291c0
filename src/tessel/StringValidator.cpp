#include <tessel/StringValidator.h>

#include <tessel/String.h>

namespace tsl
{

static Result MakeLengthFailure(char const * sHead, unsigned int iLimit)
{
    String sText;
    sText.Format("%s%d letters.", sHead, static_cast<int>(iLimit));
    return Result(ERR::eOutOfRange, sText, Result::eCategoryDefault);
}

template<>
constexpr ClassSource CLASS_SOURCE<StringValidator>{};
template<>
ClassDescription const & Described<StringValidator, Root>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

Result StringValidator::Validate(String const & s) const
{
    if (s.GetLength() < m_iMinimum)
        return MakeLengthFailure("String must contain at least ", m_iMinimum);
    if (m_bMaximum && s.GetLength() > m_iMaximum)
        return MakeLengthFailure("String must contain at most ", m_iMaximum);
    return Result::Null();
}

void StringValidator::DoCopy(Root const & oSource)
{
    *this = static_cast<StringValidator const &>(oSource);
}

} // namespace tsl
