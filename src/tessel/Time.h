#pragma once

namespace tsl
{

/// The enumerations of the date and time classes. It has no objects.
///
///     DateTime const oDay(iSeconds, Time::ePrecisionDay);
class Time
{
public:
    Time() = delete;

    /// The finest element of a time or a span that counts. Coarser elements always count.
    enum Precision : int
    {
        ePrecisionDay = 0,
        ePrecisionHour = 1,
        ePrecisionMinute = 2,
        ePrecisionSecond = 3
    };

    /// Daylight saving, with the values of tm_isdst.
    enum
    {
        eDLSOff = 0,
        eDLSOn = 1,
        eDLSUnknown = -1 ///< conversions of local time find it out
    };
};

} // namespace tsl
