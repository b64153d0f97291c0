#pragma once

#include <tessel/Export.h>
#include <tessel/Time.h>

namespace tsl
{

/// A length of time in days, hours, minutes and seconds. A day always has 86400 seconds.
///
///     TimeSpan const oSpan(0, 25, 0, 0); // 25 hours
///     int const iDays = oSpan.GetDays(); // 1, and GetHours is 1 as well
///
/// All parts have the sign of the length. The total is an int of seconds, about 68 years in both directions;
/// beyond that it wraps around in two's complement. One thread at a time uses an object.
class TSL_EXPORT TimeSpan
{
public:
    /// No time, precision of seconds.
    TimeSpan() = default;

    /// Splits the seconds into the parts: 90061 is 1 day, 1 hour, 1 minute and 1 second. Precision of
    /// seconds.
    TimeSpan(int iSeconds);

    /// The same for parts of any size, such as 25 hours. With parts of mixed signs some of the time may be
    /// lost: 1 minute and -1 second become 0 minutes and -1 second.
    TimeSpan(int iDays, int iHours, int iMinutes, int iSeconds);

    /// Parts of the span: hours to 23, minutes and seconds to 59.
    int GetDays() const { return m_iDays; }
    int GetHours() const { return m_iHours; }
    int GetMinutes() const { return m_iMinutes; }
    int GetSeconds() const { return m_iSeconds; }

    /// The finest part that counts.
    Time::Precision GetPrecision() const { return m_ePrecision; }

    /// Finer parts are kept, but GetAsSeconds ignores them.
    void SetPrecision(Time::Precision ePrecision) { m_ePrecision = ePrecision; }

    /// The parts up to the precision as a number of seconds; 0 if the precision is none of the enumerators.
    int GetAsSeconds() const;

protected:
    /// Brings the parts into their ranges: days, hours and minutes are computed from GetAsSeconds, the
    /// seconds from their own former value.
    void Normalize();

private:
    Time::Precision m_ePrecision = Time::ePrecisionSecond;
    int m_iDays = 0;
    int m_iHours = 0;
    int m_iMinutes = 0;
    int m_iSeconds = 0;
};

} // namespace tsl
