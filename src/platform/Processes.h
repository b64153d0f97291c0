#pragma once

#include "platform/Files.h"

#include <cstdint>

/// Child processes. An int result is the system's error number, 0 for success.
namespace tsl::Platform
{

/// What stays of a child process after CloseProcess. Allocated before the start, so that no end needs memory.
struct ProcessRecord;

/// A child process, until it is given up by CloseProcess.
struct Process
{
    int iProcessId = 0;
    std::intptr_t iHandle = -1;
    bool bEnded = false;
    bool bKilled = false;
    int iExitCode = 0; ///< what it ended with, or what Kill wants it to be
    ProcessRecord * pRecord = nullptr;

    bool IsOpen() const { return iProcessId != 0; }
};

/// The exit code of a process that runs.
inline constexpr int EXIT_CODE_ACTIVE = 259;

/// The child's ends of its three streams; one that is not open is that of this process.
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
    bool bDetached = false;  ///< it gets a session of its own
    bool bSuspended = false; ///< it waits before its first instruction
};

/// Starts a program, looked for in the search path, with the arguments of a command line. They are
/// separated by white space unless it is between double quotes, which are dropped; no other character
/// means anything. The child gets its three streams and no other open file, and signals as a fresh
/// program has them.
[[nodiscard]] int StartProcess(ProcessStart const & oStart, Process & oProcess);

/// Gives up the process, which runs on if it has not ended; one that was never continued after a suspended
/// start is ended. A process that runs on costs no descriptor and is reaped later: each start and each
/// giving up looks after 64 of those in turn, and so does GetExitCode if nobody has for ten milliseconds.
void CloseProcess(Process & oProcess);

/// Ends a process that nobody will ask again, and waits a second at most until it has ended.
void EndProcess(Process & oProcess);

/// EXIT_CODE_ACTIVE while it runs, 128 and the number of the signal that ended it, the code that was given to
/// KillProcess, or -1 if it has ended but somebody else has taken its exit code away.
[[nodiscard]] int GetExitCode(Process & oProcess, int & iExitCode);

/// Ends the process at once, as if by that exit code.
[[nodiscard]] int KillProcess(Process & oProcess, int iExitCode);

/// Waits so many milliseconds, or for ever if they are negative, for the process to end.
[[nodiscard]] int WaitForProcess(Process const & oProcess, int iTimeout, bool & bEnded);

} // namespace tsl::Platform
