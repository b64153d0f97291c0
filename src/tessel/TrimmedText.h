#pragma once

#include <tessel/String.h>

#include <string_view>

namespace tsl
{

/// The text without white space at both ends. It refers to the bytes of the argument.
inline std::string_view Trimmed(std::string_view sText)
{
    while (!sText.empty() && String::IsSpace(sText.front()))
        sText.remove_prefix(1);
    while (!sText.empty() && String::IsSpace(sText.back()))
        sText.remove_suffix(1);
    return sText;
}

} // namespace tsl
