#include <tessel/Int32Validator.h>

#include <tessel/String.h>

namespace tsl
{

Result Int32Validator::Validate(int iValue) const
{
    if (iValue < m_iMinimum)
        return Result(ERR::eOutOfRange, String("Value must be greater or equal to ") + m_iMinimum + ".",
            Result::eCategoryDefault);
    if (iValue > m_iMaximum)
        return Result(ERR::eOutOfRange, String("Value must be less or equal to ") + m_iMaximum + ".",
            Result::eCategoryDefault);
    return Result::Null();
}

} // namespace tsl
