#pragma once

#include <tessel/Export.h>
#include <tessel/Result.h>

#include <limits>

namespace tsl
{

/// Checks whether an integer is in a range that includes its limits.
///
///     Int32Validator const oPort(1, 65535);
///     Result const oResult = oPort.Validate(iValue); // code 4 for 0
///
/// With a minimum above the maximum no number is accepted. An object is immutable, apart from assignment, so
/// any thread may use it.
class TSL_EXPORT Int32Validator
{
public:
    /// Accepts every number.
    Int32Validator() = default;
    Int32Validator(int iMinimum, int iMaximum) : m_iMinimum(iMinimum), m_iMaximum(iMaximum) {}
    Int32Validator(Int32Validator const & oSource) = default;
    Int32Validator & operator=(Int32Validator const & oSource) = default;
    virtual ~Int32Validator() = default;

    /// A success, or a failure of code 4 with a text that names the limit.
    [[nodiscard]] virtual Result Validate(int iValue) const;

private:
    int m_iMinimum = std::numeric_limits<int>::min();
    int m_iMaximum = std::numeric_limits<int>::max();
};

} // namespace tsl
