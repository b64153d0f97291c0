#include <tessel/TimeZone.h>

#include "platform/Calendar.h"

#include <tessel/Assertion.h>
#include <tessel/Exception.h>
#include <tessel/OS.h>
#include <tessel/String.h>

#include <cstdint>
#include <iterator>

namespace tsl
{

static constexpr long SECONDS_PER_HOUR = 3600;

// In the order of EZone, from eNewZealand on.
static constexpr char const * ZONE_TEXTS[] = {"NewZealand", "CarolineIslands", "MarianaIslands", "Japan",
    "China", "Java", "Kazakh", "Pakistan", "CaspianSea", "Ukraine", "Nile", "Europe", "Greenwich", "Azores",
    "Oscar", "Greenland", "Atlantic", "USEastern", "USCentral", "USMountain", "USPacific", "Yukon", "Hawaii",
    "Bering", "Eniwetok"};
static_assert(std::size(ZONE_TEXTS) == TimeZone::eEniwetok - TimeZone::eNewZealand + 1);

bool TimeZone::Init()
{
    Platform::LoadTimeZone();
    return true;
}

char const * TimeZone::GetZoneAsText(EZone eZone)
{
    if (eZone < eNewZealand || eZone > eEniwetok)
        return "";
    return ZONE_TEXTS[eZone - eNewZealand];
}

TimeZone::EZone TimeZone::GetLocal()
{
    long iSeconds = 0;
    if (int const iError = Platform::GetSecondsWest(iSeconds))
        XAssertionFailed("err==0",
            MakeResult(ERR::eTimeZoneQuery, "Error calling _get_timezone()", OS::FormatError(iError)));
    if (iSeconds % SECONDS_PER_HOUR != 0)
        XAssertionFailed("seconds%3600==0", "Internal");

    long const iHours = iSeconds / SECONDS_PER_HOUR;
    if (iHours < eNewZealand || iHours > eEniwetok)
        XAssertionFailed("hours >= eNewZealand && hours <= eEniwetok", "Internal");
    return static_cast<EZone>(iHours);
}

void TimeZone::ConvertToZone(long long iTime, EZone eZone, std::tm & oElements)
{
    if (eZone == GetLocal())
    {
        if (int const iError = Platform::ToLocalTime(iTime, oElements))
            Exception::Throw(
                MakeResult(ERR::eBadData, "Time cannot be converted to local time", OS::FormatError(iError)));
    }
    else if (eZone == eGreenwich)
    {
        if (int const iError = Platform::ToGreenwichTime(iTime, oElements))
            Exception::Throw(
                MakeResult(ERR::eBadData, "Time cannot be converted to gm time", OS::FormatError(iError)));
    }
    else
        XAssertionFailed(
            "false", String("Conversion to time zone ") + GetZoneAsText(eZone) + " is not implemented yet");
}

void TimeZone::ConvertFromZone(std::tm & oElements, EZone eZone, long long & iTime)
{
    std::int64_t iConverted = -1;
    if (eZone == GetLocal())
        iConverted = Platform::FromLocalTime(oElements);
    else if (eZone == eGreenwich)
        iConverted = Platform::FromGreenwichTime(oElements);
    else
        XAssertionFailed("false",
            String("Conversion from time zone ") + GetZoneAsText(eZone) + " + is not implemented yet");

    // The runtime library reports failure only by -1, which is also the time one second before 1970.
    if (iConverted == -1)
        Exception::Throw(MakeResult(ERR::eBadData, "Time components cannot be converted to time"));
    iTime = iConverted;
}

} // namespace tsl
