#pragma once

#include <tessel/String.h>

#include <string_view>

namespace tsl
{

/// As String::IsSpace, inline for the bytes that print, which are no space in any locale (R08).
inline bool IsTrimmed(char c)
{
    return (c <= ' ' || c > '~') && String::IsSpace(c);
}

/// The text without white space at both ends. It refers to the bytes of the argument.
inline std::string_view Trimmed(std::string_view sText)
{
    while (!sText.empty() && IsTrimmed(sText.front()))
        sText.remove_prefix(1);
    while (!sText.empty() && IsTrimmed(sText.back()))
        sText.remove_suffix(1);
    return sText;
}

} // namespace tsl
