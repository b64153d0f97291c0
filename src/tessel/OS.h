#pragma once

#include <tessel/Export.h>
#include <tessel/Result.h>

namespace tsl
{

class String;

/// Services of the operating system. The functions have no state; any thread may call them.
///
///     String sFolder;
///     if (Result const oResult = OS::GetWorkingDirectory(sFolder); oResult.IsError())
///         return oResult;
class TSL_EXPORT OS
{
public:
    OS() = delete;

    /// Suspends the calling thread for iDuration milliseconds. Returns at once for 0 or less.
    static void Sleep(int iDuration);

    /// The system's id of the process.
    static int GetProcessId();

    /// The system's id of the calling thread.
    static unsigned long GetThreadId();

    /// A failure with the error number as its code and the system's text; also for 0. It has no source place.
    [[nodiscard]] static Result FormatError(int iError);

    /// FormatError for the last error of the calling thread (errno).
    [[nodiscard]] static Result GetLastError();

    /// The file name of the running program, without folder and without a final ".exe". Code 10 if the system
    /// does not report it; sName then stays as it was.
    [[nodiscard]] static Result GetApplicationFileName(String & sName);

    /// The folder of the running program's file, without a separator at the end. Failures as for
    /// GetApplicationFileName.
    [[nodiscard]] static Result GetApplicationFilePath(String & sPath);

    /// The current directory of the process. Code 1 if the system does not report it; sDirectory then stays
    /// as it was.
    [[nodiscard]] static Result GetWorkingDirectory(String & sDirectory);
};

} // namespace tsl
