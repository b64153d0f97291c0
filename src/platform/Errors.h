#pragma once

#include <string>

/// Error numbers of the system, and their texts.
namespace tsl::Platform
{

/// The error number (errno) of the calling thread.
int GetLastError();

/// The system's text for an error number.
std::string GetErrorText(int iError);

} // namespace tsl::Platform
