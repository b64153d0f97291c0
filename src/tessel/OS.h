#pragma once

#include <tessel/Export.h>
#include <tessel/Result.h>

namespace tsl
{

class String;

/// A handful of services of the operating system. The functions have no state and may be called from any
/// thread.
class TSL_EXPORT OS
{
public:
    OS() = delete;

    /// Suspends the calling thread for so many milliseconds; not at all for 0 or less.
    static void Sleep(int iDuration);

    static int GetProcessId();

    /// The system's id of the calling thread.
    static unsigned long GetThreadId();

    /// The system's text for an error number: always a failure, with the number as its code, also for 0.
    /// It has no source place.
    [[nodiscard]] static Result FormatError(int iError);

    /// FormatError of the runtime library's last error on this thread.
    [[nodiscard]] static Result GetLastError();

    /// The name of the running program's file without folder and without a final ".exe". Code 10 if it
    /// cannot be found out; the text then stays as it was.
    [[nodiscard]] static Result GetApplicationFileName(String & sName);

    /// The folder of the running program's file, without a separator at the end. Failures as above.
    [[nodiscard]] static Result GetApplicationFilePath(String & sPath);

    /// The process's current directory. Code 1 if it cannot be found out; the text then stays as it was.
    [[nodiscard]] static Result GetWorkingDirectory(String & sDirectory);
};

} // namespace tsl
