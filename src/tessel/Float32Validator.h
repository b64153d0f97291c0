#pragma once

#include <tessel/Export.h>
#include <tessel/Result.h>

#include <limits>

namespace tsl
{

/// Says whether a number lies in a range, its limits included; what is no number passes. Nothing compares
/// the two limits: a minimum above the maximum lets no number pass. Read-only once it is made, so any
/// thread may use it.
class TSL_EXPORT Float32Validator
{
public:
    /// Accepts every finite number.
    Float32Validator() = default;
    Float32Validator(float fMinimum, float fMaximum) : m_fMinimum(fMinimum), m_fMaximum(fMaximum) {}
    Float32Validator(Float32Validator const & oSource) = default;
    Float32Validator & operator=(Float32Validator const & oSource) = default;
    virtual ~Float32Validator() = default;

    /// Code 4 for a number outside of the range.
    [[nodiscard]] virtual Result Validate(float fValue) const;

private:
    float m_fMinimum = std::numeric_limits<float>::lowest();
    float m_fMaximum = std::numeric_limits<float>::max();
};

} // namespace tsl
