#include "platform/Locale.h"

#include <cstdio>
#include <string>

#include <locale.h>

namespace tsl::Platform
{

namespace
{

/// The calling thread has the "C" locale until the end of the scope.
class PlainLocaleScope
{
public:
    PlainLocaleScope()
        : m_iFormerKind(::_configthreadlocale(_ENABLE_PER_THREAD_LOCALE)),
          m_sFormer(::setlocale(LC_ALL, nullptr))
    {
        ::setlocale(LC_ALL, "C");
    }
    ~PlainLocaleScope()
    {
        ::setlocale(LC_ALL, m_sFormer.c_str());
        ::_configthreadlocale(m_iFormerKind);
    }
    PlainLocaleScope(PlainLocaleScope const &) = delete;
    PlainLocaleScope & operator=(PlainLocaleScope const &) = delete;

private:
    int m_iFormerKind;
    std::string m_sFormer;
};

} // namespace

int FormatInPlainLocale(char * pBuffer, std::size_t iSize, char const * sFormat, std::va_list oArguments)
{
    PlainLocaleScope const oScope;
    return std::vsnprintf(pBuffer, iSize, sFormat, oArguments);
}

} // namespace tsl::Platform
