#include "LogTimes.h"

#include <charconv>
#include <limits>

namespace
{

LogTime GetLocalTime(std::time_t iMoment)
{
    // localtime, as for the times of the log: TimeZone knows only zones of whole hours.
    std::tm const * const pLocal = std::localtime(&iMoment);
    if (!pLocal)
        return 0;
    LogTime const iDate =
        (LogTime{pLocal->tm_year + 1900} * 100 + pLocal->tm_mon + 1) * 100 + pLocal->tm_mday;
    return (((iDate * 100) + pLocal->tm_hour) * 100 + pLocal->tm_min) * 100 + pLocal->tm_sec;
}

/// Whether the text has the form, in which each letter is a digit of the part with that letter.
bool ReadForm(std::string_view sText, std::string_view sForm, std::string_view sLetters, int * pParts)
{
    if (sText.size() != sForm.size())
        return false;
    for (std::size_t i = 0; i < sForm.size(); ++i)
    {
        std::size_t const iPart = sLetters.find(sForm[i]);
        bool const bDigit = sText[i] >= '0' && sText[i] <= '9';
        if (iPart == std::string_view::npos ? sText[i] != sForm[i] : !bDigit)
            return false;
        if (iPart != std::string_view::npos)
            pParts[iPart] = pParts[iPart] * 10 + (sText[i] - '0');
    }
    return true;
}

bool ReadDate(std::string_view sText, LogTime & iDate)
{
    int aEuropean[3] = {};
    int aInternational[3] = {};
    int const * pParts = aEuropean;
    if (!ReadForm(sText, "DD.MM.YYYY", "YMD", aEuropean))
    {
        if (!ReadForm(sText, "YYYY-MM-DD", "YMD", aInternational))
            return false;
        pParts = aInternational;
    }
    iDate = (LogTime{pParts[0]} * 100 + pParts[1]) * 100 + pParts[2];
    return pParts[1] >= 1 && pParts[1] <= 12 && pParts[2] >= 1 && pParts[2] <= 31;
}

bool ReadClock(std::string_view sText, TimeEdge eEdge, LogTime & iClock)
{
    int aParts[3] = {};
    if (!ReadForm(sText, "hh:mm:ss", "hms", aParts))
    {
        int aShort[3] = {0, 0, eEdge == TimeEdge::eEnd ? 59 : 0};
        if (!ReadForm(sText, "hh:mm", "hm", aShort))
            return false;
        std::copy(aShort, aShort + 3, aParts);
    }
    iClock = (LogTime{aParts[0]} * 100 + aParts[1]) * 100 + aParts[2];
    return aParts[0] < 24 && aParts[1] < 60 && aParts[2] <= 60;
}

bool ReadAge(std::string_view sText, std::time_t iNow, LogTime & iTime)
{
    constexpr std::string_view sUnits = "smhd";
    constexpr std::time_t aSeconds[] = {1, 60, 3600, 86400};
    int iCount = 0;
    auto const [pEnd, eError] = std::from_chars(sText.data(), sText.data() + sText.size(), iCount);
    std::string_view const sUnit = sText.substr(static_cast<std::size_t>(pEnd - sText.data()));
    std::size_t const iUnit = sUnits.find(sUnit);
    if (eError != std::errc() || iCount < 0 || sUnit.size() != 1 || iUnit == std::string_view::npos)
        return false;
    iTime = GetLocalTime(iNow - iCount * aSeconds[iUnit]);
    return true;
}

} // namespace

bool ReadLogTime(std::string_view sText, std::time_t iNow, TimeEdge eEdge, LogTime & iTime)
{
    constexpr LogTime iDay = 1'000'000;
    if (ReadAge(sText, iNow, iTime))
        return true;

    LogTime iDate = GetLocalTime(iNow) / iDay;
    LogTime iClock = eEdge == TimeEdge::eEnd ? 235960 : 0;
    if (ReadClock(sText, eEdge, iClock) || ReadDate(sText, iDate))
    {
        iTime = iDate * iDay + iClock;
        return true;
    }

    std::size_t const iBlank = sText.find_first_of(" T");
    if (iBlank == std::string_view::npos || !ReadDate(sText.substr(0, iBlank), iDate)
        || !ReadClock(sText.substr(iBlank + 1), eEdge, iClock))
        return false;
    iTime = iDate * iDay + iClock;
    return true;
}
