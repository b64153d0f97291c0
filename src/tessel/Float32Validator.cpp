#include <tessel/Float32Validator.h>

#include <tessel/String.h>

namespace tsl
{

Result Float32Validator::Validate(float fValue) const
{
    if (fValue < m_fMinimum)
        return Result(ERR::eOutOfRange, String("Value must be greater or equal to ") + m_fMinimum + ".",
            Result::eCategoryDefault);
    if (fValue > m_fMaximum)
        return Result(ERR::eOutOfRange, String("Value must be less or equal to ") + m_fMaximum + ".",
            Result::eCategoryDefault);
    return Result::Null();
}

} // namespace tsl
