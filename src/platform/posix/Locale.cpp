#include "platform/Locale.h"

#include <cstdio>

#include <locale.h>

namespace tsl::Platform
{

namespace
{

locale_t GetPlainLocale()
{
    static locale_t const oPlain = ::newlocale(LC_ALL_MASK, "C", nullptr);
    return oPlain;
}

} // namespace

int FormatInPlainLocale(char * pBuffer, std::size_t iSize, char const * sFormat, std::va_list oArguments)
{
    // uselocale changes the locale of the calling thread only.
    locale_t const oFormer = ::uselocale(GetPlainLocale());
    int const iLength = std::vsnprintf(pBuffer, iSize, sFormat, oArguments);
    ::uselocale(oFormer);
    return iLength;
}

} // namespace tsl::Platform
