#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>

/// What the library asks of the operating system: plain functions without state of their own, callable
/// from any thread. One that can fail returns the system's error number, 0 for success.
namespace tsl::Platform
{

/// Between the folders of a path.
extern char const PATH_SEPARATOR;

/// The name that a compiled type name stands for.
std::string DecodeTypeName(char const * sTypeName);

/// Formats as vsnprintf does, but as in the "C" locale, whatever the locale of the process is.
int FormatInPlainLocale(char * pBuffer, std::size_t iSize, char const * sFormat, std::va_list oArguments);

/// Suspends the calling thread for so many milliseconds; not at all for 0 or less.
void Sleep(int iDuration);

/// The same, but ends early once the thread has run a handler of a signal.
void SleepAlertably(int iDuration);

/// The ids are asked for once, and again in a process that was forked off.
int GetProcessId();
unsigned long GetThreadId();

/// A thread that was started. All but the thread itself use it one at a time.
struct Thread;

/// Starts a thread that calls the function with the argument and ends. The caller closes it later.
[[nodiscard]] int StartThread(void (*fMain)(void *), void * pArgument, Thread *& pThread);

/// As GetThreadId on the thread itself; good until the thread is found to have ended.
unsigned long GetThreadId(Thread const & oThread);

bool IsThisThread(Thread const & oThread);

/// Whether the thread exists no more, as in a child that another thread has forked off. The answer true stays.
bool HasEnded(Thread & oThread);

/// Called in a forked child, whose only thread is the one that forked it.
void KeepThisThreadInChild();

/// What keeps a thread from being ended where it stands.
enum class EndObstacle : int
{
    eNone,
    eNoAnswer, ///< it does not look: it has not begun, or nothing can interrupt it
    eLock,     ///< it holds a lock of the library
    eLibrary,  ///< it is within the library
    eRuntime,  ///< it is within a runtime library, or was called back by one
    eStack     ///< it is unknown how the program got there
};

/// Asks the thread to end where it stands: nothing is unwound, and no destructor runs. It ends as soon as
/// that does no harm to the rest of the process: while it neither holds a lock of the library nor is within
/// the library or the runtime libraries, or while it waits. To be repeated, with a pause between, until the
/// thread has ended or the request is withdrawn.
void AskToEnd(Thread & oThread);
void PauseBetweenAsking();

/// Withdraws what AskToEnd has asked, and tells the last obstacle. False if the thread is ending already.
[[nodiscard]] bool StopAskingToEnd(Thread & oThread, EndObstacle & eObstacle);

/// Ends the calling thread, which has been asked, if that does no harm at the address that the present
/// function of the library will return to.
void EndThisThreadIf(void const * pReturn);

/// Waits for the end of the thread and gives its memory back. The calling thread may close itself; its
/// memory then goes when it ends.
void CloseThread(Thread * pThread);

/// The runtime library's number of the calling thread's last error, and the text of a number.
int GetLastError();
std::string GetErrorText(int iError);

/// The full path of the running program, as it was started if its file has been removed or replaced.
[[nodiscard]] int GetProgramPath(std::string & sPath);
[[nodiscard]] int GetWorkingDirectory(std::string & sPath);

/// Seconds since 1970-01-01 00:00:00 UTC.
std::int64_t GetTime();

/// Milliseconds of a clock that only goes forward, also while the process sleeps. Only differences count.
std::int64_t GetSteadyTime();

/// Loads the zone of the process and remembers how far its standard time is west of Greenwich.
void LoadTimeZone();

/// Seconds west of Greenwich, as remembered by LoadTimeZone.
[[nodiscard]] int GetSecondsWest(long & iSeconds);

/// What the years of std::tm count from.
inline constexpr int YEAR_BASE = 1900;

/// Between a time and its elements, in the local zone or in Greenwich. From elements: overflows are
/// normalised in place, and a result of -1 is a failure, as the runtime library has it.
[[nodiscard]] int ToLocalTime(std::int64_t iTime, std::tm & oElements);
[[nodiscard]] int ToGreenwichTime(std::int64_t iTime, std::tm & oElements);
std::int64_t FromLocalTime(std::tm & oElements);
std::int64_t FromGreenwichTime(std::tm & oElements);

/// An open file. It is closed by CloseFile and not inherited by child processes.
struct File
{
    std::intptr_t iHandle = -1;
    bool bSignals = false; ///< a write that fails may raise a signal as well
    bool bRegular = false; ///< opened for appending, and no pipe or device

    bool IsOpen() const { return iHandle != -1; }
};

/// Opens a file for writing at its end, made if it is absent. Never waits: a pipe without a reader fails.
/// No write to it ends the program by a signal, unless the process limits the size of files later on.
[[nodiscard]] int OpenForAppend(char const * sName, File & oFile);

/// Appends a line with its end. To a regular file it is one call of the system; if that takes a part of the
/// line only, as on a full disk, the part is ended as a line in the place of its last byte.
[[nodiscard]] int Append(File const & oFile, char const * pBytes, std::size_t iCount);

/// Whether the last line of a regular file has no end. False if the file cannot be read.
bool EndsInTornLine(File const & oFile);

/// Opens a regular file or a directory (which then fails to be read). Never waits: whatever else has the
/// name cannot be opened.
[[nodiscard]] int OpenForRead(char const * sName, File & oFile);

/// Reads up to iCount bytes; iRead is 0 at the end of the file.
[[nodiscard]] int Read(File const & oFile, char * pBytes, std::size_t iCount, std::size_t & iRead);

/// Does nothing to a file that is not open.
void CloseFile(File & oFile);

/// Which end of a pipe stays in this process; the other one is for a child.
enum class OwnEnd
{
    eRead,
    eWrite
};

/// Makes a one-way channel of bytes. Neither end is inherited as it is.
[[nodiscard]] int MakePipe(OwnEnd eOwn, File & oOwnEnd, File & oOtherEnd);

/// Waits for bytes at an own read end and takes up to iCount of them. iRead is 0 if nobody can write any
/// more, or if the other end of oStop is closed and there is nothing to read; oStop may be not open.
[[nodiscard]] int ReadPipe(
    File const & oPipe, File const & oStop, char * pBytes, std::size_t iCount, std::size_t & iRead);

/// What outlives the hold on a child process. Allocated before the start, so that no end needs memory.
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
    bool bSuspended = false; ///< it stands before its first instruction
};

/// Starts a program, looked for in the search path, with the arguments of a command line. They are
/// separated by white space unless it stands between double quotes, which are dropped; no other character
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

/// What the file name of a dynamic library ends with.
extern char const * const LIBRARY_ENDING;

/// Loads a library, or null if that fails; the file is looked for as the system does.
void * LoadLibrary(char const * sFile);
void FreeLibrary(void * pLibrary);

/// Whether the library is being unloaded, which nobody uses any more, and not the process ended, where other
/// threads may. To be asked by what runs at the end.
bool IsUnloading();

/// The calling thread's return addresses, innermost first, with null in the rest; and what they are the places
/// of, a line each, to the standard error stream.
void GetStack(void ** pAddresses, std::size_t iCount);
void WriteStack(void * const * pAddresses, std::size_t iCount);

/// Writes the text to the standard error stream.
void WriteToStandardError(std::string_view sText);

} // namespace tsl::Platform
