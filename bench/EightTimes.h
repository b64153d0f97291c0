#pragma once

namespace tslbench
{

/// Calls the function eight times without a loop, whose counter would cost as much as a call of about a nanosecond.
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
