#pragma once

#include <string>

/// Which program, process and thread this is. An int result is the system's error number, 0 for success.
namespace tsl::Platform
{

/// The full path of the running program. If its file has been removed or replaced, the path from which it was
/// started.
[[nodiscard]] int GetProgramPath(std::string & sPath);

/// Both ids are cached per thread (R02, R08); a forked child asks the system again.
int GetProcessId();
unsigned long GetThreadId();

} // namespace tsl::Platform
