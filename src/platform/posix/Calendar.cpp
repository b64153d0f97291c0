#include "platform/Calendar.h"

#include "platform/ForcedEnd.h"

#include <atomic>
#include <cerrno>

#include <time.h>

namespace tsl::Platform
{

namespace
{

// The runtime library's own number is overwritten by later conversions of daylight-saving zones.
std::atomic<long> g_iSecondsWest{0};

} // namespace

// The runtime library's functions of time have a lock of their own, which a forked child finds as it was. The
// holds keep a fork away from it.

void LoadTimeZone()
{
    NoKillScope const oScope;
    ::tzset();
    g_iSecondsWest.store(::timezone, std::memory_order_relaxed);
}

int GetSecondsWest(long & iSeconds)
{
    iSeconds = g_iSecondsWest.load(std::memory_order_relaxed);
    return 0;
}

int ToLocalTime(std::int64_t iTime, std::tm & oElements)
{
    NoKillScope const oScope;
    time_t const iSystemTime = iTime;
    return ::localtime_r(&iSystemTime, &oElements) ? 0 : errno;
}

int ToGreenwichTime(std::int64_t iTime, std::tm & oElements)
{
    NoKillScope const oScope;
    time_t const iSystemTime = iTime;
    return ::gmtime_r(&iSystemTime, &oElements) ? 0 : errno;
}

std::int64_t FromLocalTime(std::tm & oElements)
{
    NoKillScope const oScope;
    return ::mktime(&oElements);
}
std::int64_t FromGreenwichTime(std::tm & oElements)
{
    NoKillScope const oScope;
    return ::timegm(&oElements);
}

} // namespace tsl::Platform
