#pragma once

#include <string>

/// The errors of the system.
namespace tsl::Platform
{

/// The runtime library's number of the calling thread's last error.
int GetLastError();

/// The text of an error's number.
std::string GetErrorText(int iError);

} // namespace tsl::Platform
