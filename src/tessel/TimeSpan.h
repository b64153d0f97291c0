#pragma once

#include <tessel/Export.h>
#include <tessel/Time.h>

namespace tsl
{

/// An amount of time in days, hours, minutes and seconds, where a day always has 86400 seconds.
///
/// All parts carry the sign of the amount. Seconds are counted in an int, about 68 years each way, and
/// wrap around beyond that as two's complement does. An object is used by one thread at a time.
class TSL_EXPORT TimeSpan
{
public:
    /// Nothing at all, with a precision of seconds.
    TimeSpan() = default;

    /// The amount spread over the parts, with a precision of seconds: 90061 is 1 day, 1 hour, 1 minute
    /// and 1 second.
    TimeSpan(int iSeconds);

    /// The same for parts of any size, such as 25 hours. Parts of mixed signs may lose some of the
    /// amount: 1 minute and -1 second become 0 minutes and -1 second.
    TimeSpan(int iDays, int iHours, int iMinutes, int iSeconds);

    int GetDays() const { return m_iDays; }
    int GetHours() const { return m_iHours; }
    int GetMinutes() const { return m_iMinutes; }
    int GetSeconds() const { return m_iSeconds; }

    Time::Precision GetPrecision() const { return m_ePrecision; }

    /// Finer parts are kept, but GetAsSeconds looks past them.
    void SetPrecision(Time::Precision ePrecision) { m_ePrecision = ePrecision; }

    /// The amount of the parts that the precision counts; 0 for a number that is no precision.
    int GetAsSeconds() const;

protected:
    /// Brings the parts into their ranges, each from what GetAsSeconds tells; the seconds from their own
    /// former number.
    void Normalize();

private:
    Time::Precision m_ePrecision = Time::ePrecisionSecond;
    int m_iDays = 0;
    int m_iHours = 0;
    int m_iMinutes = 0;
    int m_iSeconds = 0;
};

} // namespace tsl
