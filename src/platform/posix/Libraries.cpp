#include "platform/Libraries.h"

#include <string_view>

#include <dlfcn.h>
#include <unwind.h>

namespace tsl::Platform
{

namespace
{

bool g_bUnloading = false;

/// The name of the function of a library that a frame of the stack belongs to, or "".
std::string_view GetFunctionName(_Unwind_Context * pFrame)
{
    // A call that never returns may be the last instruction of its function.
    void * const pFunction =
        ::_Unwind_FindEnclosingFunction(reinterpret_cast<void *>(::_Unwind_GetIP(pFrame) - 1));
    Dl_info oInfo = {};
    bool const bKnown = pFunction && ::dladdr(pFunction, &oInfo) != 0 && oInfo.dli_saddr == pFunction;
    return bKnown && oInfo.dli_sname ? oInfo.dli_sname : "";
}

/// Stops at what has begun last, the end of the process or an unloading.
_Unwind_Reason_Code LookForUnloading(_Unwind_Context * pFrame, void *)
{
    std::string_view const sFunction = GetFunctionName(pFrame);
    g_bUnloading = sFunction == "dlclose";
    return g_bUnloading || sFunction == "exit" ? _URC_END_OF_STACK : _URC_NO_REASON;
}

/// The loader calls this before it runs the destructors of the library's static objects. It does so when the
/// library is unloaded and when the process ends; who has called the loader is all that differs. At the end of a
/// process that has loaded the library late, those have run before.
[[gnu::destructor]] void NoteUnloading()
{
    ::_Unwind_Backtrace(&LookForUnloading, nullptr);
}

} // namespace

char const * const LIBRARY_ENDING = ".so";

void * LoadLibrary(char const * sFile)
{
    // All symbols now: a library that lacks one must fail here and not in the middle of its work.
    return ::dlopen(sFile, RTLD_NOW);
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
