#pragma once

#include <string>
#include <string_view>

namespace tsl::Platform
{

/// Texts are UTF-8 in the library and UTF-16 in the system. What is not valid becomes U+FFFD.
std::wstring ToWide(std::string_view sText);
std::string ToUtf8(std::wstring_view sText);

} // namespace tsl::Platform
