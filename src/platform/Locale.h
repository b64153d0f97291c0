#pragma once

#include <cstdarg>
#include <cstddef>

/// The locale of the process, which the program may set.
namespace tsl::Platform
{

/// Formats as vsnprintf does, but as in the "C" locale, whatever the locale of the process is.
int FormatInPlainLocale(char * pBuffer, std::size_t iSize, char const * sFormat, std::va_list oArguments);

} // namespace tsl::Platform
