#include "platform/Libraries.h"

#include "platform/Errors.h"
#include "platform/windows/Handle.h"
#include "platform/windows/Text.h"

namespace
{

bool g_bUnloading = false;

} // namespace

/// The system calls this before the destructors of the library's static objects run.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD iReason, void * pProcessEnds)
{
    if (iReason == DLL_PROCESS_DETACH)
        g_bUnloading = pProcessEnds == nullptr;
    return TRUE;
}

namespace tsl::Platform
{

char const * const LIBRARY_ENDING = ".dll";

void * LoadLibrary(char const * sFile, std::string & sReason)
{
    // No message box for a file that is no library.
    DWORD iFormer = 0;
    ::SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &iFormer);
    void * const pLibrary = reinterpret_cast<void *>(::LoadLibraryW(ToWide(sFile).c_str()));
    if (!pLibrary)
        sReason = GetErrorText(GetSystemError());
    ::SetThreadErrorMode(iFormer, nullptr);
    return pLibrary;
}

void FreeLibrary(void * pLibrary)
{
    ::FreeLibrary(static_cast<HMODULE>(pLibrary));
}

bool IsUnloading()
{
    return g_bUnloading;
}

} // namespace tsl::Platform
