#include "platform/Identity.h"

#include "platform/windows/Handle.h"
#include "platform/windows/Text.h"

namespace tsl::Platform
{

int GetProgramPath(std::string & sPath)
{
    std::wstring sBuffer(MAX_PATH, L'\0');
    for (;;)
    {
        DWORD const iLength =
            ::GetModuleFileNameW(nullptr, sBuffer.data(), static_cast<DWORD>(sBuffer.size()));
        if (iLength == 0)
            return GetSystemError();
        if (iLength < sBuffer.size())
        {
            sPath = ToUtf8({sBuffer.data(), iLength});
            return 0;
        }
        sBuffer.resize(sBuffer.size() * 2);
    }
}

int GetProcessId()
{
    return static_cast<int>(::GetCurrentProcessId());
}

unsigned long GetThreadId()
{
    return ::GetCurrentThreadId();
}

} // namespace tsl::Platform
