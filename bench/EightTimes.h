#pragma once

namespace tslbench
{

/// Calls the function eight times in a row without a loop: what costs about a nanosecond would be hidden by
/// the counting of one.
template<class Call>
[[gnu::always_inline]] inline void EightTimes(Call const & fCall)
{
    fCall();
    fCall();
    fCall();
    fCall();
    fCall();
    fCall();
    fCall();
    fCall();
}

} // namespace tslbench
