#pragma once

#include <tessel/Export.h>
#include <tessel/Result.h>

#include <limits>

namespace tsl
{

/// Checks whether a number is in a range that includes its limits.
///
///     Float32Validator const oPercent(0, 100);
///     Result const oResult = oPercent.Validate(fValue); // code 4 for 100.5
///
/// NaN is accepted. With a minimum above the maximum no number is. An object is immutable, apart from
/// assignment, so any thread may use it.
class TSL_EXPORT Float32Validator
{
public:
    /// Accepts every finite number.
    Float32Validator() = default;
    Float32Validator(float fMinimum, float fMaximum) : m_fMinimum(fMinimum), m_fMaximum(fMaximum) {}
    Float32Validator(Float32Validator const & oSource) = default;
    Float32Validator & operator=(Float32Validator const & oSource) = default;
    virtual ~Float32Validator() = default;

    /// A success, or a failure of code 4 with a text that names the limit.
    [[nodiscard]] virtual Result Validate(float fValue) const;

private:
    float m_fMinimum = std::numeric_limits<float>::lowest();
    float m_fMaximum = std::numeric_limits<float>::max();
};

} // namespace tsl
