#include "Style.h"

#include "../shared/System.h"

#include <cstdlib>

namespace
{

char const * GetColour(JobState eState)
{
    switch (eState)
    {
    case JobState::eDone:
        return "\033[32m";
    case JobState::eFailed:
        return "\033[31m";
    case JobState::eStopping:
    case JobState::eRetrying:
    case JobState::eSkipped:
        return "\033[33m";
    default:
        return "";
    }
}

/// Goes over a sequence such as those that change colours.
std::size_t SkipSequence(std::string const & sText, std::size_t iAt)
{
    ++iAt;
    if (iAt < sText.size() && sText[iAt] == '[')
        for (++iAt; iAt < sText.size() && (sText[iAt] < '@' || sText[iAt] > '~');)
            ++iAt;
    return iAt;
}

/// How many bytes of UTF-8 follow the first one of a character; a byte that is none stands alone.
std::size_t CountFollowing(std::string const & sText, std::size_t iAt)
{
    auto const iFirst = static_cast<unsigned char>(sText[iAt]);
    std::size_t const iFollowing = iFirst >= 0xF0 ? 3 : iFirst >= 0xE0 ? 2 : iFirst >= 0xC0 ? 1 : 0;
    for (std::size_t i = 1; i <= iFollowing; ++i)
        if (iAt + i >= sText.size() || (static_cast<unsigned char>(sText[iAt + i]) & 0xC0) != 0x80)
            return 0;
    return iFollowing;
}

} // namespace

Style Style::Find()
{
    char const * const sNoColor = std::getenv("NO_COLOR");
    bool const bTerminal = System::IsOutputTerminal();
    return {bTerminal, bTerminal && (!sNoColor || !*sNoColor)};
}

std::string Style::Paint(JobState eState, std::string const & sText) const
{
    std::string const sColour = bColours ? GetColour(eState) : "";
    return sColour.empty() ? sText : sColour + sText + GetReset();
}

std::string Style::GetReset() const
{
    return bTerminal ? "\033[0m" : "";
}

std::string MakeShort(std::string const & sText, std::size_t iWidth)
{
    std::string sShort;
    std::size_t iCharacters = 0;
    for (std::size_t i = 0; i < sText.size() && iCharacters < iWidth; ++i)
    {
        auto const iByte = static_cast<unsigned char>(sText[i]);
        if (iByte == '\033')
            i = SkipSequence(sText, i);
        else if (iByte == '\t' || (iByte >= ' ' && iByte < 0x7F))
        {
            sShort += iByte == '\t' ? ' ' : sText[i];
            ++iCharacters;
        }
        else if (iByte >= 0x80)
        {
            std::size_t const iFollowing = CountFollowing(sText, i);
            sShort += iFollowing == 0 ? "?" : sText.substr(i, iFollowing + 1);
            i += iFollowing;
            ++iCharacters;
        }
    }
    return sShort;
}

std::string FormatDuration(long iDuration)
{
    tsl::String sText;
    sText.Format("%.3f s", static_cast<double>(iDuration) / 1000.0);
    return sText.s_str();
}
