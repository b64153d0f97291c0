#include "platform/Files.h"

#include "platform/posix/Descriptor.h"

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <utility>

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

namespace tsl::Platform
{

namespace
{

/// Blocks the signals that a failing write raises (broken pipe, file size limit) on the calling thread. At
/// its end it removes those that the write has raised, but not those that were pending before.
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
        // A thread cancellation that began in this destructor would terminate the program.
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
    sigset_t m_oRaised; // only signals that were not pending before
};

/// Whether the process has a limit for the size of files.
bool IsFileSizeLimited()
{
    rlimit oLimit{};
    return ::getrlimit(RLIMIT_FSIZE, &oLimit) != 0 || oLimit.rlim_cur != RLIM_INFINITY;
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

/// Opens the file of a descriptor once more, since a descriptor that appends cannot write at another place.
int OpenAnew(int iHandle, int iMode)
{
    std::string const sLink = "/proc/self/fd/" + std::to_string(iHandle);
    return ::open(sLink.c_str(), iMode | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
}

/// Ends a line of which only a part could be appended: overwrites the last byte of the part. That needs no
/// disk space and touches nothing that others have appended since.
void EndTornLine(int iHandle)
{
    off_t const iEnd = ::lseek(iHandle, 0, SEEK_CUR);
    int const iAnew = OpenAnew(iHandle, O_WRONLY);
    if (iAnew < 0)
        return;

    // If this fails, the next process that opens the file finds the torn line (EndsInTornLine).
    static_cast<void>(::pwrite(iAnew, "\n", 1, iEnd - 1) == 1);
    ::close(iAnew);
}

/// Appends to a regular file by one call: between two calls another process could append something.
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

/// The size of a file whose last byte ends no line, else 0.
off_t FindTornEnd(int iHandle)
{
    char cLast = '\n';
    struct stat oStatus = {};
    bool const bRead = ::fstat(iHandle, &oStatus) == 0 && oStatus.st_size > 0
                       && ::pread(iHandle, &cLast, 1, oStatus.st_size - 1) == 1;
    return bRead && cLast != '\n' ? oStatus.st_size : 0;
}

/// Returns when the appends of other processes that were under way have ended: the kernel grows a file page by
/// page, so that a line which is being appended looks torn. An append of no byte queues up behind them.
void WaitForAppends(int iHandle)
{
    static_cast<void>(::write(iHandle, "", 0) == 0);
}

int Write(File const & oFile, char const * pBytes, std::size_t iCount)
{
    return oFile.bRegular ? AppendLine(GetHandle(oFile), pBytes, iCount)
                          : WriteAll(GetHandle(oFile), pBytes, iCount);
}

} // namespace

char const PATH_SEPARATOR = '/';

int GetWorkingDirectory(std::string & sPath)
{
    std::unique_ptr<char, void (*)(void *)> const sDirectory(::getcwd(nullptr, 0), &std::free);
    if (!sDirectory)
        return errno;
    sPath = sDirectory.get();
    return 0;
}

int OpenForAppend(char const * sName, File & oFile)
{
    // O_NONBLOCK: opening a pipe must not wait for a reader. Writing may wait, so it is cleared below.
    int const iHandle =
        ::open(sName, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0666);
    if (iHandle < 0)
        return errno;

    struct stat oStatus = {};
    ::fstat(iHandle, &oStatus);
    // Checked only here: blocking the signals for each write costs more than the write itself (R02).
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

    off_t iTorn = FindTornEnd(iAnew);
    if (iTorn > 0)
    {
        WaitForAppends(GetHandle(oFile));
        iTorn = FindTornEnd(iAnew) == iTorn ? iTorn : 0;
    }
    ::close(iAnew);
    return iTorn > 0;
}

int OpenForRead(char const * sName, File & oFile)
{
    // The kind of the file is checked after opening, which is free of races. O_NONBLOCK: opening a pipe must
    // not wait for a writer.
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

void WriteToStandardError(std::string_view sText)
{
    // A failure is ignored: there is nowhere left to report it.
    WriteSignalScope const oScope;
    static_cast<void>(WriteAll(STDERR_FILENO, sText.data(), sText.size()));
}

} // namespace tsl::Platform
