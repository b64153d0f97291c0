#include "platform/Errors.h"

#include "platform/windows/System.h"
#include "platform/windows/Text.h"

#include <cerrno>

namespace tsl::Platform
{

int GetLastError()
{
    // The number of the runtime library, not of the system.
    return errno;
}

std::string GetErrorText(int iError)
{
    wchar_t * pText = nullptr;
    DWORD const iLength = ::FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
        static_cast<DWORD>(iError), 0, reinterpret_cast<wchar_t *>(&pText), 0, nullptr);
    std::string sText = ToUtf8({pText, iLength});
    ::LocalFree(pText);
    return sText;
}

} // namespace tsl::Platform
