#pragma once

#include "platform/Files.h"

#include <cstdint>

/// Child processes. An int result is the system's error number, 0 for success.
namespace tsl::Platform
{

/// What is kept of a child process after CloseProcess. It is allocated before the start, so that CloseProcess
/// allocates nothing.
struct ProcessRecord;

/// A child process, from StartProcess to CloseProcess.
struct Process
{
    int iProcessId = 0;
    std::intptr_t iHandle = -1;
    bool bEnded = false;
    bool bKilled = false;
    int iExitCode = 0; ///< valid if bEnded; after KillProcess, the code that was given to it
    ProcessRecord * pRecord = nullptr;

    bool IsOpen() const { return iProcessId != 0; }
};

/// The exit code that a running process reports.
inline constexpr int EXIT_CODE_ACTIVE = 259;

/// The child's ends of its three standard streams. For one that is not open the child inherits the stream of
/// this process.
struct StandardStreams
{
    File oInput;
    File oOutput;
    File oErrors;
};

struct ProcessStart
{
    char const * sCommandLine = nullptr;
    StandardStreams const & oStreams;
    bool bNoWindow = false;   ///< no console window; without effect where consoles have none
    bool bNewConsole = false; ///< a console of its own; without effect as well
    bool bDetached = false;   ///< the child gets a session of its own, or no console
    bool bSuspended = false;  ///< the child stops before the first instruction of its program
};

/// Starts the program that a command line names, with its arguments. The program is searched in PATH.
/// Arguments are separated by white space outside of double quotes. The quotes are dropped; no other
/// character is special. The child gets its three streams and no other open file. Its signals have their
/// default handling and are not blocked.
[[nodiscard]] int StartProcess(ProcessStart const & oStart, Process & oProcess);

/// Releases the process, which goes on running. One that was never continued after a suspended start is
/// killed. A process that goes on running takes no descriptor and is reaped later: each StartProcess and
/// CloseProcess checks up to 64 of them in turn. GetExitCode does so as well, if the last check is at least
/// ten milliseconds ago.
void CloseProcess(Process & oProcess);

/// Kills a process whose exit code nobody needs, and waits up to one second for its end.
void EndProcess(Process & oProcess);

/// The exit code of the process, where one of these replaces its own: EXIT_CODE_ACTIVE while it runs; 128
/// plus the signal's number if a signal ended it; the code that was given to KillProcess; -1 if another part
/// of the program has reaped it and the code is lost.
[[nodiscard]] int GetExitCode(Process & oProcess, int & iExitCode);

/// Kills the process at once. GetExitCode will return iExitCode. ESRCH if the process is known to have ended.
[[nodiscard]] int KillProcess(Process & oProcess, int iExitCode);

/// Waits up to iTimeout milliseconds for the end of the process, without limit if it is negative.
[[nodiscard]] int WaitForProcess(Process const & oProcess, int iTimeout, bool & bEnded);

} // namespace tsl::Platform
