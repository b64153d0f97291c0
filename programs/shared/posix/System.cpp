#include "../System.h"

#include <cerrno>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

namespace System
{

namespace
{

int WriteAll(int iHandle, std::string_view sText)
{
    while (!sText.empty())
    {
        ssize_t const iWritten = ::write(iHandle, sText.data(), sText.size());
        if (iWritten < 0 && errno == EINTR)
            continue;
        if (iWritten <= 0)
            return iWritten < 0 ? errno : EIO;
        sText.remove_prefix(static_cast<std::size_t>(iWritten));
    }
    return 0;
}

/// Writes the folder to the disk: until then a power failure may undo the renaming of a file.
int SyncFolder(std::filesystem::path const & oFolder)
{
    int const iHandle = ::open(oFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (iHandle < 0)
        return errno;
    // Some file systems do not support it. That is no failure: the file was renamed.
    static_cast<void>(::fsync(iHandle));
    ::close(iHandle);
    return 0;
}

} // namespace

void IgnoreWriteSignals()
{
    ::signal(SIGPIPE, SIG_IGN);
    ::signal(SIGXFSZ, SIG_IGN);
}

int WriteOutput(std::string_view sText)
{
    return WriteAll(STDOUT_FILENO, sText);
}

bool IsBrokenPipe(int iError)
{
    return iError == EPIPE;
}

bool IsOutputTerminal()
{
    return ::isatty(STDOUT_FILENO) != 0;
}

bool WaitWithOutput(std::chrono::milliseconds iDuration)
{
    pollfd oOutput = {STDOUT_FILENO, 0, 0};
    return ::poll(&oOutput, 1, static_cast<int>(iDuration.count())) <= 0 || (oOutput.revents & POLLERR) == 0;
}

int ReplaceFile(std::filesystem::path const & oOld, std::filesystem::path const & oNew)
{
    struct stat oStatus = {};
    if (::stat(oOld.c_str(), &oStatus) != 0)
        return errno;
    // The owner first: changing it clears bits of the mode. Only root may change it; otherwise the caller becomes
    // the owner, as with any editor.
    static_cast<void>(::chown(oNew.c_str(), oStatus.st_uid, oStatus.st_gid) == 0);
    if (::chmod(oNew.c_str(), oStatus.st_mode & 07777) != 0 || ::rename(oNew.c_str(), oOld.c_str()) != 0)
        return errno;
    return SyncFolder(oOld.parent_path());
}

int WriteBeside(
    std::filesystem::path const & oFile, std::string_view sContent, std::filesystem::path & oBeside)
{
    // Who may not write the file must not replace it either, even if the folder allows it.
    if (::access(oFile.c_str(), W_OK) != 0 && errno != ENOENT)
        return errno;
    std::string sName = oFile.string() + ".XXXXXX";
    int const iHandle = ::mkostemp(sName.data(), O_CLOEXEC);
    if (iHandle < 0)
        return errno;
    oBeside = sName;

    int iError = WriteAll(iHandle, sContent);
    if (iError == 0 && ::fsync(iHandle) != 0)
        iError = errno;
    if (::close(iHandle) != 0 && iError == 0)
        iError = errno;
    if (iError != 0)
        ::unlink(sName.c_str());
    return iError;
}

int InputFile::Open(char const * sName)
{
    Close();
    m_iHandle = ::open(sName, O_RDONLY | O_CLOEXEC | O_NOCTTY);
    return m_iHandle < 0 ? errno : 0;
}

void InputFile::UseStandardInput()
{
    Close();
    m_iHandle = STDIN_FILENO;
}

void InputFile::Close()
{
    if (m_iHandle > STDIN_FILENO)
        ::close(m_iHandle);
    m_iHandle = -1;
}

int InputFile::Read(char * pBuffer, std::size_t iSize, std::size_t & iRead)
{
    ssize_t iCount = 0;
    do
        iCount = ::read(m_iHandle, pBuffer, iSize);
    while (iCount < 0 && errno == EINTR);
    iRead = iCount < 0 ? 0 : static_cast<std::size_t>(iCount);
    return iCount < 0 ? errno : 0;
}

std::size_t InputFile::ReadHead(char * pBuffer, std::size_t iSize) const
{
    ssize_t const iCount = ::pread(m_iHandle, pBuffer, iSize, 0);
    return iCount < 0 ? 0 : static_cast<std::size_t>(iCount);
}

std::uint64_t InputFile::GetSize() const
{
    struct stat oStatus = {};
    return ::fstat(m_iHandle, &oStatus) == 0 ? static_cast<std::uint64_t>(oStatus.st_size) : 0;
}

bool InputFile::IsReplaced(char const * sName) const
{
    struct stat oOwn = {};
    struct stat oNamed = {};
    return ::fstat(m_iHandle, &oOwn) == 0 && ::stat(sName, &oNamed) == 0
           && (oOwn.st_dev != oNamed.st_dev || oOwn.st_ino != oNamed.st_ino);
}

void InputFile::Rewind()
{
    static_cast<void>(::lseek(m_iHandle, 0, SEEK_SET));
}

} // namespace System
