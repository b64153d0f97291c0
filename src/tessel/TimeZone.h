#pragma once

#include <tessel/Export.h>

#include <ctime>

namespace tsl
{

/// The whole-hour zones of the world by name, and conversions between a 64-bit time and its elements.
///
/// Times are seconds since 1970-01-01 00:00:00 UTC. Two zones can be converted: the computer's local one
/// and Greenwich. A machine whose standard time is not a whole number of hours away from Greenwich, or
/// more than 12, has no local zone, and then nothing can be converted.
///
/// The zone is the one that the process had when Init was last called. A program that changes its
/// environment variable TZ calls Init again; what is converted before that may be in either zone. All
/// operations but Init may be called from any thread.
class TSL_EXPORT TimeZone
{
public:
    TimeZone() = delete;

    /// Hours west of Greenwich in standard time; zones east of it are negative.
    enum EZone : int
    {
        eNewZealand = -12,
        eCarolineIslands = -11,
        eMarianaIslands = -10,
        eJapan = -9,
        eChina = -8,
        eJava = -7,
        eKazakh = -6,
        ePakistan = -5,
        eCaspianSea = -4,
        eUkraine = -3,
        eNile = -2,
        eEurope = -1,
        eGreenwich = 0,
        eAzores = 1,
        eOscar = 2,
        eGreenland = 3,
        eAtlantic = 4,
        eUSEastern = 5,
        eUSCentral = 6,
        eUSMountain = 7,
        eUSPacific = 8,
        eYukon = 9,
        eHawaii = 10,
        eBering = 11,
        eEniwetok = 12
    };

    /// Loads the zone of the process, which the library does when it is loaded. Always true.
    static bool Init();

    /// The enumerator's name without its "e"; empty for a number that is no zone.
    static char const * GetZoneAsText(EZone eZone);

    /// The local zone. Assertion failures: "seconds%3600==0" if it is not a whole number of hours away
    /// from Greenwich, "hours >= eNewZealand && hours <= eEniwetok" if it is too far away, "err==0" if
    /// the system does not tell (with a Result of code 7).
    static EZone GetLocal();

    /// Breaks a time into elements. The local zone has its daylight saving, also where it is Greenwich.
    /// A year that an int cannot hold throws an Exception of code 2 with the system's error as its cause.
    /// Any other zone is an assertion failure that names it; those of GetLocal may come first.
    static void ConvertToZone(long long iTime, EZone eZone, std::tm & oElements);

    /// The way back. Elements outside of their ranges count on, such as second 75, and are put right in
    /// place. In the local zone tm_isdst tells whether they are daylight-saving time, -1 if that is to be
    /// found out. Elements too far away throw an Exception of code 2, and so do those of the time -1, one
    /// second before 1970 began; iTime then stays. Other zones as above.
    static void ConvertFromZone(std::tm & oElements, EZone eZone, long long & iTime);
};

} // namespace tsl
