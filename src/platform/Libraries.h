#pragma once

/// Dynamic libraries.
namespace tsl::Platform
{

/// What the file name of a dynamic library ends with.
extern char const * const LIBRARY_ENDING;

/// Loads a library, or returns null; the file is looked for as the system does.
void * LoadLibrary(char const * sFile);
void FreeLibrary(void * pLibrary);

/// Whether this library is being unloaded, which nobody uses any more, and not the process ended, where other
/// threads may. To be asked by what runs at the end.
bool IsUnloading();

} // namespace tsl::Platform
