#include "platform/Clock.h"

#include "platform/ForcedEnd.h"

#include <cerrno>

#include <time.h>

namespace tsl::Platform
{

namespace
{

timespec MakeTimespec(int iMilliseconds)
{
    return {iMilliseconds / 1000, iMilliseconds % 1000 * 1'000'000L};
}

} // namespace

std::int64_t GetTime()
{
    return ::time(nullptr);
}

std::int64_t GetSteadyTime()
{
    // Not CLOCK_MONOTONIC, which stops while the machine is suspended.
    timespec oNow{};
    ::clock_gettime(CLOCK_BOOTTIME, &oNow);
    return std::int64_t{oNow.tv_sec} * 1000 + oNow.tv_nsec / 1'000'000;
}

void Sleep(int iDuration)
{
    if (iDuration <= 0)
        return;

    WaitScope const oScope(ForcedEndState::eForTime);
    timespec oRest = MakeTimespec(iDuration);
    while (::nanosleep(&oRest, &oRest) == -1 && errno == EINTR)
    {
    }
}

void SleepAlertably(int iDuration)
{
    if (iDuration <= 0)
        return;

    WaitScope const oScope(ForcedEndState::eForTime);
    timespec const oDuration = MakeTimespec(iDuration);
    ::nanosleep(&oDuration, nullptr);
}

} // namespace tsl::Platform
