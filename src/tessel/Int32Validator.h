#pragma once

#include <tessel/Export.h>
#include <tessel/Result.h>

#include <limits>

namespace tsl
{

/// Says whether a whole number lies in a range, its limits included. Nothing compares the two limits: a
/// minimum above the maximum lets no number pass. Read-only once it is made, so any thread may use it.
class TSL_EXPORT Int32Validator
{
public:
    /// Accepts every number.
    Int32Validator() = default;
    Int32Validator(int iMinimum, int iMaximum) : m_iMinimum(iMinimum), m_iMaximum(iMaximum) {}
    Int32Validator(Int32Validator const & oSource) = default;
    Int32Validator & operator=(Int32Validator const & oSource) = default;
    virtual ~Int32Validator() = default;

    /// Code 4 for a number outside of the range.
    [[nodiscard]] virtual Result Validate(int iValue) const;

private:
    int m_iMinimum = std::numeric_limits<int>::min();
    int m_iMaximum = std::numeric_limits<int>::max();
};

} // namespace tsl
