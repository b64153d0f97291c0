#pragma once

#include <tessel/Export.h>

#include <ctime>

namespace tsl
{

/// The whole-hour time zones by name, and conversions between times and calendar elements.
///
///     std::tm oElements{};
///     TimeZone::ConvertToZone(oMoment.GetAsTime_t(), TimeZone::GetLocal(), oElements);
///
/// Times are seconds since 1970-01-01 00:00:00 UTC. Only the local zone and Greenwich (UTC) can be converted.
/// If the local standard time is not a whole number of hours, or more than 12 hours, away from Greenwich,
/// there is no local zone and every conversion fails.
///
/// The local zone is the one that the process had at the last Init. A program that changes the environment
/// variable TZ calls Init again; conversions before that may use either zone. Any thread may call all
/// operations but Init.
class TSL_EXPORT TimeZone
{
public:
    TimeZone() = delete;

    /// Hours west of Greenwich in standard time; negative to the east.
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

    /// Loads the zone of the process. The library does this when it is loaded. Always true.
    static bool Init();

    /// The name of the enumerator without its "e"; "" for any other number. It is never freed.
    static char const * GetZoneAsText(EZone eZone);

    /// The local zone. Assertion failures: "seconds%3600==0" if it is not a whole number of hours away from
    /// Greenwich, "hours >= eNewZealand && hours <= eEniwetok" if it is too far away, "err==0" if the system
    /// does not report it (with a Result of code 7).
    static EZone GetLocal();

    /// Splits a time into calendar elements. The local zone applies daylight saving, also if it is Greenwich.
    /// A year that does not fit into an int throws an Exception of code 2 with the system's error as previous
    /// failure. A zone that is neither local nor Greenwich is an assertion failure that names it. GetLocal is
    /// called first and may fail.
    static void ConvertToZone(long long iTime, EZone eZone, std::tm & oElements);

    /// Converts calendar elements to a time. Elements out of range, such as second 75, are carried over and
    /// normalised in place. In the local zone tm_isdst says whether they are daylight saving time; -1 means
    /// unknown. Elements that no time can hold throw an Exception of code 2, and so do those of the time -1,
    /// one second before 1970; iTime then stays as it was. Other zones fail as in ConvertToZone.
    static void ConvertFromZone(std::tm & oElements, EZone eZone, long long & iTime);
};

} // namespace tsl
