#pragma once

#include <string>

/// Which program, process and thread this is. An int result is the system's error number, 0 for success.
namespace tsl::Platform
{

/// The full path of the running program, as it was started if its file has been removed or replaced.
[[nodiscard]] int GetProgramPath(std::string & sPath);

/// The ids are asked for once, and again in a process that was forked off.
int GetProcessId();
unsigned long GetThreadId();

} // namespace tsl::Platform
