#include "platform/Calendar.h"

#include "platform/windows/Text.h"

#include <string_view>

#include <time.h>

namespace tsl::Platform
{

namespace
{

/// The runtime library ends the program at a directive that it does not know, so these are doubled into text.
constexpr std::wstring_view DIRECTIVES = L"aAbBcdHIjmMpSUwWxXyYzZ%";

std::wstring EscapeUnknown(std::wstring_view sFormat)
{
    std::wstring sSafe;
    for (std::size_t i = 0; i < sFormat.size(); ++i)
    {
        sSafe += sFormat[i];
        if (sFormat[i] != L'%')
            continue;

        std::size_t const iFlag = i + 1 < sFormat.size() && sFormat[i + 1] == L'#' ? 1 : 0;
        std::size_t const iDirective = i + 1 + iFlag;
        if (iDirective < sFormat.size() && DIRECTIVES.find(sFormat[iDirective]) != std::wstring_view::npos)
        {
            sSafe += sFormat.substr(i + 1, 1 + iFlag);
            i = iDirective;
        }
        else
            sSafe += L'%';
    }
    return sSafe;
}

} // namespace

void LoadTimeZone()
{
    ::_tzset();
}

int GetSecondsWest(long & iSeconds)
{
    iSeconds = _timezone;
    return 0;
}

int ToLocalTime(std::int64_t iTime, std::tm & oElements)
{
    return ::_localtime64_s(&oElements, &iTime);
}

int ToGreenwichTime(std::int64_t iTime, std::tm & oElements)
{
    return ::_gmtime64_s(&oElements, &iTime);
}

std::int64_t FromLocalTime(std::tm & oElements)
{
    return ::_mktime64(&oElements);
}

std::int64_t FromGreenwichTime(std::tm & oElements)
{
    return ::_mkgmtime64(&oElements);
}

std::size_t FormatTime(char * pText, std::size_t iSize, char const * sFormat, std::tm const & oElements)
{
    std::wstring sWide(iSize, L'\0');
    sWide.resize(::wcsftime(sWide.data(), iSize, EscapeUnknown(ToWide(sFormat)).c_str(), &oElements));
    std::string const sText = ToUtf8(sWide);
    if (sText.size() >= iSize)
        return 0;
    pText[sText.copy(pText, iSize)] = '\0';
    return sText.size();
}

} // namespace tsl::Platform
