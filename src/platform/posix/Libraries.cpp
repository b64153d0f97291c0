#include "platform/Platform.h"

#include <dlfcn.h>

namespace tsl::Platform
{

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

} // namespace tsl::Platform
