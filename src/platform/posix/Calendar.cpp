#include "platform/Calendar.h"

#include "platform/ForcedEnd.h"

#include <atomic>
#include <cerrno>

#include <time.h>

namespace tsl::Platform
{

namespace
{

// A copy, since later conversions with daylight saving time may overwrite the runtime library's variable.
std::atomic<long> g_iSecondsWest{0};

} // namespace

// The runtime library's time functions have a lock of their own. A child that is forked while another thread
// holds it would find it locked for ever; the NoKillScopes keep other threads from forking meanwhile.

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

std::size_t FormatTime(char * pText, std::size_t iSize, char const * sFormat, std::tm const & oElements)
{
    NoKillScope const oScope;
    return std::strftime(pText, iSize, sFormat, &oElements);
}

} // namespace tsl::Platform
