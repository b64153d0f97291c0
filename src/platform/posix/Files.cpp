#include "platform/Platform.h"

#include "platform/ForcedEnd.h"
#include "platform/posix/Descriptor.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

#include <cxxabi.h>
#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <locale.h>
#include <pthread.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>
#include <unwind.h>

namespace tsl::Platform
{

namespace
{

bool g_bUnloading = false;

constexpr char const * PROGRAM_LINK = "/proc/self/exe";
constexpr std::string_view MARK_OF_DELETED = " (deleted)";

/// What a thread has asked for once. It is thrown away when the process has been forked.
struct Identity
{
    unsigned int iForkCount = 0;
    int iProcessId = 0;
    unsigned long iThreadId = 0;
};

// The runtime library's own number is overwritten by later conversions of daylight-saving zones.
std::atomic<long> g_iSecondsWest{0};

Identity const & GetIdentity()
{
    static thread_local Identity oIdentity;
    unsigned int const iForkCount = Presence::GetForkCount();
    if (oIdentity.iForkCount != iForkCount || oIdentity.iProcessId == 0) [[unlikely]]
        oIdentity = {iForkCount, ::getpid(), static_cast<unsigned long>(::syscall(SYS_gettid))};
    return oIdentity;
}

/// Keeps the signals of a failing write from the calling thread, that of a broken pipe and that of a file
/// at its size limit, and takes away those that the writing has raised.
class WriteSignalScope
{
public:
    WriteSignalScope()
    {
        sigset_t oPending;
        ::sigpending(&oPending);
        sigset_t oBlocked;
        ::sigemptyset(&oBlocked);
        ::sigemptyset(&m_oRaised);
        for (int const iSignal : {SIGPIPE, SIGXFSZ})
        {
            ::sigaddset(&oBlocked, iSignal);
            if (::sigismember(&oPending, iSignal) != 1)
                ::sigaddset(&m_oRaised, iSignal);
        }
        ::pthread_sigmask(SIG_BLOCK, &oBlocked, &m_oFormer);
    }

    ~WriteSignalScope()
    {
        // The cancellation of the thread would end the program if it were to begin in a destructor.
        int iFormerState = 0;
        ::pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &iFormerState);
        timespec const oNoWait{};
        while (::sigtimedwait(&m_oRaised, nullptr, &oNoWait) != -1 || errno == EINTR)
        {
        }
        ::pthread_setcancelstate(iFormerState, nullptr);
        ::pthread_sigmask(SIG_SETMASK, &m_oFormer, nullptr);
    }

    WriteSignalScope(WriteSignalScope const &) = delete;
    WriteSignalScope & operator=(WriteSignalScope const &) = delete;

private:
    sigset_t m_oFormer;
    sigset_t m_oRaised; // those that were not pending before
};

/// Whether the process may write no more than so many bytes to one file.
bool IsFileSizeLimited()
{
    rlimit oLimit{};
    return ::getrlimit(RLIMIT_FSIZE, &oLimit) != 0 || oLimit.rlim_cur != RLIM_INFINITY;
}

bool IsSameFile(char const * sLeft, char const * sRight)
{
    struct stat oLeft = {};
    struct stat oRight = {};
    return ::stat(sLeft, &oLeft) == 0 && ::stat(sRight, &oRight) == 0 && oLeft.st_dev == oRight.st_dev
           && oLeft.st_ino == oRight.st_ino;
}

int WriteAll(int iHandle, char const * pBytes, std::size_t iCount)
{
    while (iCount > 0)
    {
        ssize_t const iWritten = ::write(iHandle, pBytes, iCount);
        if (iWritten < 0 && errno == EINTR)
            continue;
        if (iWritten <= 0)
            return iWritten < 0 ? errno : EIO;
        pBytes += iWritten;
        iCount -= static_cast<std::size_t>(iWritten);
    }
    return 0;
}

/// Opens the file of a descriptor once more, since one that appends can write nowhere else.
int OpenAnew(int iHandle, int iMode)
{
    std::string const sLink = "/proc/self/fd/" + std::to_string(iHandle);
    return ::open(sLink.c_str(), iMode | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
}

/// Ends the line whose beginning was all that could be appended, by its last byte: that needs no space, and
/// touches nothing that others have appended meanwhile.
void EndTornLine(int iHandle)
{
    off_t const iEnd = ::lseek(iHandle, 0, SEEK_CUR);
    int const iAnew = OpenAnew(iHandle, O_WRONLY);
    if (iAnew < 0)
        return;

    // What cannot be mended here is found by whoever opens the file next.
    static_cast<void>(::pwrite(iAnew, "\n", 1, iEnd - 1) == 1);
    ::close(iAnew);
}

/// Appends to a regular file by one call: a second one might append behind what somebody else has appended.
int AppendLine(int iHandle, char const * pBytes, std::size_t iCount)
{
    ssize_t iWritten = 0;
    do
        iWritten = ::write(iHandle, pBytes, iCount);
    while (iWritten < 0 && errno == EINTR);
    if (iWritten < 0)
        return errno;
    if (static_cast<std::size_t>(iWritten) == iCount)
        return 0;

    if (iWritten > 0)
        EndTornLine(iHandle);
    return ENOSPC;
}

int Write(File const & oFile, char const * pBytes, std::size_t iCount)
{
    return oFile.bRegular ? AppendLine(GetHandle(oFile), pBytes, iCount)
                          : WriteAll(GetHandle(oFile), pBytes, iCount);
}

/// The name of the function of a library that a frame of the stack belongs to, or "".
std::string_view GetFunctionName(_Unwind_Context * pFrame)
{
    // A call that never returns may be the last instruction of its function.
    void * const pFunction =
        ::_Unwind_FindEnclosingFunction(reinterpret_cast<void *>(::_Unwind_GetIP(pFrame) - 1));
    Dl_info oInfo = {};
    bool const bKnown = pFunction && ::dladdr(pFunction, &oInfo) != 0 && oInfo.dli_saddr == pFunction;
    return bKnown && oInfo.dli_sname ? oInfo.dli_sname : "";
}

/// Stops at what has begun last, the end of the process or an unloading.
_Unwind_Reason_Code LookForUnloading(_Unwind_Context * pFrame, void *)
{
    std::string_view const sFunction = GetFunctionName(pFrame);
    g_bUnloading = sFunction == "dlclose";
    return g_bUnloading || sFunction == "exit" ? _URC_END_OF_STACK : _URC_NO_REASON;
}

/// The loader calls this before it runs the destructors of the library's static objects. It does so when the
/// library is unloaded and when the process ends; who has called the loader is all that differs. At the end of a
/// process that has loaded the library late, those have run before.
[[gnu::destructor]] void NoteUnloading()
{
    ::_Unwind_Backtrace(&LookForUnloading, nullptr);
}

timespec MakeTimespec(int iMilliseconds)
{
    return {iMilliseconds / 1000, iMilliseconds % 1000 * 1'000'000L};
}

} // namespace

char const PATH_SEPARATOR = '/';

std::string DecodeTypeName(char const * sTypeName)
{
    int iStatus = 0;
    std::unique_ptr<char, void (*)(void *)> const sDecoded(
        abi::__cxa_demangle(sTypeName, nullptr, nullptr, &iStatus), &std::free);
    return sDecoded ? sDecoded.get() : sTypeName;
}

static locale_t GetPlainLocale()
{
    static locale_t const oPlain = ::newlocale(LC_ALL_MASK, "C", nullptr);
    return oPlain;
}

int FormatInPlainLocale(char * pBuffer, std::size_t iSize, char const * sFormat, std::va_list oArguments)
{
    // The calling thread alone changes its locale; the process keeps the one that it has.
    locale_t const oFormer = ::uselocale(GetPlainLocale());
    int const iLength = std::vsnprintf(pBuffer, iSize, sFormat, oArguments);
    ::uselocale(oFormer);
    return iLength;
}

void Sleep(int iDuration)
{
    if (iDuration <= 0)
        return;

    WaitScope const oScope(ForcedEndState::eForTime);
    timespec oRest = MakeTimespec(iDuration);
    while (::nanosleep(&oRest, &oRest) == -1 && errno == EINTR)
    {
    }
}

void SleepAlertably(int iDuration)
{
    if (iDuration <= 0)
        return;

    WaitScope const oScope(ForcedEndState::eForTime);
    timespec const oDuration = MakeTimespec(iDuration);
    ::nanosleep(&oDuration, nullptr);
}

int GetProcessId()
{
    return GetIdentity().iProcessId;
}
unsigned long GetThreadId()
{
    return GetIdentity().iThreadId;
}

int GetLastError()
{
    return errno;
}

std::string GetErrorText(int iError)
{
    // The text may be looked up in a catalogue.
    HoldScope const oScope;
    char aBuffer[256];
    return ::strerror_r(iError, aBuffer, sizeof aBuffer);
}

int GetProgramPath(std::string & sPath)
{
    std::string sBuffer(256, '\0');
    for (;;)
    {
        ssize_t const iLength = ::readlink(PROGRAM_LINK, sBuffer.data(), sBuffer.size());
        if (iLength < 0)
            return errno;
        if (static_cast<std::size_t>(iLength) < sBuffer.size())
        {
            sBuffer.resize(static_cast<std::size_t>(iLength));
            break;
        }
        sBuffer.resize(sBuffer.size() * 2);
    }

    // The system marks a file that is no longer there, but the mark may as well be a part of its name.
    if (sBuffer.ends_with(MARK_OF_DELETED) && !IsSameFile(sBuffer.c_str(), PROGRAM_LINK))
        sBuffer.resize(sBuffer.size() - MARK_OF_DELETED.size());
    sPath = std::move(sBuffer);
    return 0;
}

int GetWorkingDirectory(std::string & sPath)
{
    std::unique_ptr<char, void (*)(void *)> const sDirectory(::getcwd(nullptr, 0), &std::free);
    if (!sDirectory)
        return errno;
    sPath = sDirectory.get();
    return 0;
}

std::int64_t GetTime()
{
    return ::time(nullptr);
}

std::int64_t GetSteadyTime()
{
    // Not the monotonic clock: that one stands still while the machine is suspended.
    timespec oNow{};
    ::clock_gettime(CLOCK_BOOTTIME, &oNow);
    return std::int64_t{oNow.tv_sec} * 1000 + oNow.tv_nsec / 1'000'000;
}

// The runtime library's functions of time have a lock of their own, which a forked child finds as it was. The
// holds keep a fork away from it.

void LoadTimeZone()
{
    HoldScope const oScope;
    ::tzset();
    g_iSecondsWest.store(::timezone, std::memory_order_relaxed);
}

int GetSecondsWest(long & iSeconds)
{
    iSeconds = g_iSecondsWest.load(std::memory_order_relaxed);
    return 0;
}

int ToLocalTime(std::int64_t iTime, std::tm & oElements)
{
    HoldScope const oScope;
    time_t const iSystemTime = iTime;
    return ::localtime_r(&iSystemTime, &oElements) ? 0 : errno;
}

int ToGreenwichTime(std::int64_t iTime, std::tm & oElements)
{
    HoldScope const oScope;
    time_t const iSystemTime = iTime;
    return ::gmtime_r(&iSystemTime, &oElements) ? 0 : errno;
}

std::int64_t FromLocalTime(std::tm & oElements)
{
    HoldScope const oScope;
    return ::mktime(&oElements);
}
std::int64_t FromGreenwichTime(std::tm & oElements)
{
    HoldScope const oScope;
    return ::timegm(&oElements);
}

int OpenForAppend(char const * sName, File & oFile)
{
    // Without waiting for the reader of a pipe; once it is open, a slow reader is waited for.
    int const iHandle =
        ::open(sName, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0666);
    if (iHandle < 0)
        return errno;

    struct stat oStatus = {};
    ::fstat(iHandle, &oStatus);
    // Asked once, since to keep the signals off costs more than the writing itself.
    oFile = {iHandle, S_ISFIFO(oStatus.st_mode) || IsFileSizeLimited(), S_ISREG(oStatus.st_mode)};
    if (!oFile.bRegular)
        ::fcntl(iHandle, F_SETFL, ::fcntl(iHandle, F_GETFL) & ~O_NONBLOCK);
    return 0;
}

int Append(File const & oFile, char const * pBytes, std::size_t iCount)
{
    if (!oFile.bSignals)
        return Write(oFile, pBytes, iCount);

    WriteSignalScope const oScope;
    return Write(oFile, pBytes, iCount);
}

bool EndsInTornLine(File const & oFile)
{
    int const iAnew = oFile.bRegular ? OpenAnew(GetHandle(oFile), O_RDONLY) : -1;
    if (iAnew < 0)
        return false;

    char cLast = '\n';
    struct stat oStatus = {};
    bool const bRead = ::fstat(iAnew, &oStatus) == 0 && oStatus.st_size > 0
                       && ::pread(iAnew, &cLast, 1, oStatus.st_size - 1) == 1;
    ::close(iAnew);
    return bRead && cLast != '\n';
}

int OpenForRead(char const * sName, File & oFile)
{
    // What kind of file it is can only be told without a race once it is open, and a pipe without a
    // writer must not be waited for.
    int const iHandle = ::open(sName, O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (iHandle < 0)
        return errno;

    struct stat oStatus = {};
    bool const bKnown = ::fstat(iHandle, &oStatus) == 0;
    int const iError = bKnown ? EINVAL : errno;
    if (!bKnown || !(S_ISREG(oStatus.st_mode) || S_ISDIR(oStatus.st_mode)))
    {
        ::close(iHandle);
        return iError;
    }
    oFile = {iHandle};
    return 0;
}

int Read(File const & oFile, char * pBytes, std::size_t iCount, std::size_t & iRead)
{
    for (;;)
    {
        ssize_t const iResult = ::read(GetHandle(oFile), pBytes, iCount);
        if (iResult >= 0)
        {
            iRead = static_cast<std::size_t>(iResult);
            return 0;
        }
        if (errno != EINTR)
            return errno;
    }
}

void CloseFile(File & oFile)
{
    if (oFile.IsOpen())
        ::close(GetHandle(std::exchange(oFile, File())));
}

bool IsUnloading()
{
    return g_bUnloading;
}

void GetStack(void ** pAddresses, std::size_t iCount)
{
    auto const iFound = ::backtrace(pAddresses, static_cast<int>(iCount));
    std::fill(pAddresses + iFound, pAddresses + iCount, nullptr);
}

void WriteStack(void * const * pAddresses, std::size_t iCount)
{
    auto const iFound = std::find(pAddresses, pAddresses + iCount, nullptr) - pAddresses;
    ::backtrace_symbols_fd(pAddresses, static_cast<int>(iFound), STDERR_FILENO);
}

void WriteToStandardError(std::string_view sText)
{
    // Nobody is left to be told if this fails, not even by a signal.
    WriteSignalScope const oScope;
    static_cast<void>(WriteAll(STDERR_FILENO, sText.data(), sText.size()));
}

} // namespace tsl::Platform
