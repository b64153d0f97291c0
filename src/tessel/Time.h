#pragma once

namespace tsl
{

/// The enumerations of the date and time classes.
class Time
{
public:
    Time() = delete;

    /// The finest element of a moment or of a span that counts. Coarser ones count as well.
    enum Precision : int
    {
        ePrecisionDay = 0,
        ePrecisionHour = 1,
        ePrecisionMinute = 2,
        ePrecisionSecond = 3
    };

    /// Daylight saving, as the runtime library's broken-down time has it.
    enum
    {
        eDLSOff = 0,
        eDLSOn = 1,
        eDLSUnknown = -1 ///< the runtime library finds it out
    };
};

} // namespace tsl
