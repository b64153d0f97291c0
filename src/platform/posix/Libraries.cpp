#include "platform/Libraries.h"

#include <string_view>

#include <dlfcn.h>
#include <unwind.h>

namespace tsl::Platform
{

namespace
{

bool g_bUnloading = false;

/// The exported name of the function that a stack frame belongs to, or "".
std::string_view GetFunctionName(_Unwind_Context * pFrame)
{
    // Minus 1: a call that never returns may be the last instruction of its function.
    void * const pFunction =
        ::_Unwind_FindEnclosingFunction(reinterpret_cast<void *>(::_Unwind_GetIP(pFrame) - 1));
    Dl_info oInfo = {};
    bool const bKnown = pFunction && ::dladdr(pFunction, &oInfo) != 0 && oInfo.dli_saddr == pFunction;
    return bKnown && oInfo.dli_sname ? oInfo.dli_sname : "";
}

/// Stops at the innermost frame of dlclose or exit.
_Unwind_Reason_Code LookForUnloading(_Unwind_Context * pFrame, void *)
{
    std::string_view const sFunction = GetFunctionName(pFrame);
    g_bUnloading = sFunction == "dlclose";
    return g_bUnloading || sFunction == "exit" ? _URC_END_OF_STACK : _URC_NO_REASON;
}

/// Finds out from the stack whether dlclose or exit has called the loader.
///
/// The loader calls this before it runs the destructors of the library's static objects, both when the
/// library is unloaded and when the process ends. Only at the end of a process that loaded the library with
/// dlopen, those destructors have run before; IsUnloading has then returned false, which is right.
[[gnu::destructor]] void NoteUnloading()
{
    ::_Unwind_Backtrace(&LookForUnloading, nullptr);
}

} // namespace

char const * const LIBRARY_ENDING = ".so";

void * LoadLibrary(char const * sFile, std::string & sReason)
{
    // RTLD_NOW: a library with a missing symbol must fail here, not later at the first call.
    void * const pLibrary = ::dlopen(sFile, RTLD_NOW);
    if (!pLibrary)
        if (char const * const sError = ::dlerror())
            sReason = sError;
    return pLibrary;
}

void FreeLibrary(void * pLibrary)
{
    ::dlclose(pLibrary);
}

bool IsUnloading()
{
    return g_bUnloading;
}

} // namespace tsl::Platform
