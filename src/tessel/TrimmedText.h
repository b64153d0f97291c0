#pragma once

#include <tessel/String.h>

#include <string_view>

namespace tsl
{

/// The text without the white space at both ends.
inline std::string_view Trimmed(std::string_view sText)
{
    while (!sText.empty() && String::IsSpace(sText.front()))
        sText.remove_prefix(1);
    while (!sText.empty() && String::IsSpace(sText.back()))
        sText.remove_suffix(1);
    return sText;
}

} // namespace tsl
