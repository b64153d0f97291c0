#include <tessel/TimeSpan.h>

#include <cstdint>

namespace tsl
{

static constexpr int SECONDS_PER_MINUTE = 60;
static constexpr int SECONDS_PER_HOUR = 60 * SECONDS_PER_MINUTE;
static constexpr int SECONDS_PER_DAY = 24 * SECONDS_PER_HOUR;

TimeSpan::TimeSpan(int iSeconds) : TimeSpan(0, 0, 0, iSeconds) {}

TimeSpan::TimeSpan(int iDays, int iHours, int iMinutes, int iSeconds)
    : m_iDays(iDays), m_iHours(iHours), m_iMinutes(iMinutes), m_iSeconds(iSeconds)
{
    Normalize();
}

int TimeSpan::GetAsSeconds() const
{
    // No sum overflows 64 bits; the conversion to int wraps around.
    std::int64_t iTotal = 0;
    switch (m_ePrecision)
    {
    case Time::ePrecisionSecond:
        iTotal += m_iSeconds;
        [[fallthrough]];
    case Time::ePrecisionMinute:
        iTotal += std::int64_t{m_iMinutes} * SECONDS_PER_MINUTE;
        [[fallthrough]];
    case Time::ePrecisionHour:
        iTotal += std::int64_t{m_iHours} * SECONDS_PER_HOUR;
        [[fallthrough]];
    case Time::ePrecisionDay:
        iTotal += std::int64_t{m_iDays} * SECONDS_PER_DAY;
    }
    return static_cast<int>(iTotal);
}

void TimeSpan::Normalize()
{
    int const iTotal = GetAsSeconds();
    m_iDays = iTotal / SECONDS_PER_DAY;
    m_iHours = iTotal % SECONDS_PER_DAY / SECONDS_PER_HOUR;
    m_iMinutes = iTotal % SECONDS_PER_HOUR / SECONDS_PER_MINUTE;
    m_iSeconds %= SECONDS_PER_MINUTE;
}

} // namespace tsl
