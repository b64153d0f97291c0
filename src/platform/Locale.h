#pragma once

#include <cstdarg>
#include <cstddef>

/// Formatting that does not depend on the locale of the process.
namespace tsl::Platform
{

/// Formats like vsnprintf, always in the "C" locale.
int FormatInPlainLocale(char * pBuffer, std::size_t iSize, char const * sFormat, std::va_list oArguments);

} // namespace tsl::Platform
