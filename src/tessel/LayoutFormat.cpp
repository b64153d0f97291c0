#include "LayoutFormat.h"

namespace tsl
{

namespace
{

constexpr std::size_t OPENING_LENGTH = 2; // of "${"
constexpr std::size_t IDENTIFIER_LENGTH_MIN = 1;

} // namespace

bool Replacement::IsClosed() const
{
    return iEnd != std::string_view::npos && iEnd >= iStart + OPENING_LENGTH + IDENTIFIER_LENGTH_MIN;
}

std::string_view Replacement::GetIdentifier(std::string_view sFormat) const
{
    std::size_t const iIdentifier = iStart + OPENING_LENGTH;
    return sFormat.substr(iIdentifier, iEnd - iIdentifier);
}

Replacement FindReplacement(std::string_view sFormat, std::size_t iFrom)
{
    // Plain loops: a format is so short that they end before a search of the runtime library begins (R08).
    Replacement oFound;
    std::size_t i = iFrom;
    while (i + 1 < sFormat.size() && !(sFormat[i] == '$' && sFormat[i + 1] == '{'))
        ++i;
    if (i + 1 >= sFormat.size())
        return oFound;

    oFound.iStart = i;
    while (i < sFormat.size() && sFormat[i] != '}')
        ++i;
    if (i < sFormat.size())
        oFound.iEnd = i;
    return oFound;
}

} // namespace tsl
