#pragma once

#include <string>

/// Dynamic libraries.
namespace tsl::Platform
{

/// The file name extension of dynamic libraries, with its dot.
extern char const * const LIBRARY_ENDING;

/// Loads a library, found by the system's search rules. Null if that fails; sReason is then the system's text.
void * LoadLibrary(char const * sFile, std::string & sReason);
void FreeLibrary(void * pLibrary);

/// Whether this library is being unloaded (true) or the process ends (false). Only the destructors of static
/// objects may call it. After unloading nobody uses the library; at the end of the process other threads may
/// still do.
bool IsUnloading();

} // namespace tsl::Platform
