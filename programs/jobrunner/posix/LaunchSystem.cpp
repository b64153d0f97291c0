#include "../LaunchSystem.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace LaunchSystem
{

namespace
{

std::string GetDescriptorPath(int iDescriptor)
{
    return "/proc/" + std::to_string(::getpid()) + "/fd/" + std::to_string(iDescriptor);
}

int CheckProgram(std::filesystem::path const & oProgram)
{
    struct stat oStatus = {};
    if (::stat(oProgram.c_str(), &oStatus) != 0)
        return errno;
    if (!S_ISREG(oStatus.st_mode))
        return EACCES;
    return ::faccessat(AT_FDCWD, oProgram.c_str(), X_OK, AT_EACCESS) == 0 ? 0 : errno;
}

} // namespace

std::string GetOwnProgram()
{
    return "/proc/self/exe";
}

int WriteToMemory(std::string const & sContent, std::string & sName)
{
    int const iMade = ::memfd_create("jobs", MFD_CLOEXEC);
    if (iMade < 0)
        return errno;
    // Not among the three streams, even if those are closed: children get them.
    int const iFile = ::fcntl(iMade, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    int iError = iFile < 0 ? errno : 0;
    ::close(iMade);

    std::size_t iWritten = 0;
    while (iError == 0 && iWritten < sContent.size())
    {
        ssize_t const iCount = ::write(iFile, sContent.data() + iWritten, sContent.size() - iWritten);
        if (iCount < 0 && errno != EINTR)
            iError = errno;
        iWritten += static_cast<std::size_t>(iCount < 0 ? 0 : iCount);
    }
    sName = GetDescriptorPath(iFile);
    return iError;
}

std::string GetInputFile(std::string const & sName)
{
    if (sName.empty())
        return "/dev/null";
    return sName == "yes" ? GetDescriptorPath(STDIN_FILENO) : sName;
}

std::vector<std::string> GetShellWords(std::string const & sCommand)
{
    return {"/bin/sh", "-c", sCommand};
}

int FindProgram(std::string const & sProgram, std::string const & sFolder, std::string const & sPath)
{
    if (sProgram.find('/') != std::string::npos)
        return CheckProgram(std::filesystem::path(sFolder) / sProgram);
    char const * const sOwnPath = std::getenv("PATH");
    std::istringstream oPath(!sPath.empty() ? sPath : sOwnPath ? sOwnPath : "/bin:/usr/bin");
    int iError = ENOENT;
    for (std::string sEntry; std::getline(oPath, sEntry, ':');)
    {
        // An empty entry is the current folder.
        int const iFound = CheckProgram(std::filesystem::path(sFolder) / sEntry / sProgram);
        if (iFound == 0)
            return 0;
        if (iFound == EACCES)
            iError = EACCES;
    }
    return iError;
}

int EnterFolder(std::string const & sFolder)
{
    return sFolder.empty() || ::chdir(sFolder.c_str()) == 0 ? 0 : errno;
}

int UseInput(std::string const & sFile)
{
    // A terminal must not become that of the job's session, where it would send signals.
    int const iFile = ::open(sFile.c_str(), O_RDONLY | O_NOCTTY);
    if (iFile < 0 || ::dup2(iFile, STDIN_FILENO) < 0)
        return errno;
    if (iFile != STDIN_FILENO)
        ::close(iFile);
    return 0;
}

int Become(std::vector<std::string> const & vWords, std::vector<std::string> const & vEnvironment)
{
    for (std::string const & sVariable : vEnvironment)
    {
        std::size_t const iEqual = sVariable.find('=');
        ::setenv(sVariable.substr(0, iEqual).c_str(), sVariable.substr(iEqual + 1).c_str(), 1);
    }
    std::vector<char *> vArguments;
    for (std::string const & sWord : vWords)
        vArguments.push_back(const_cast<char *>(sWord.c_str()));
    vArguments.push_back(nullptr);
    ::execvp(vArguments.front(), vArguments.data());
    return errno;
}

int GetExitCode(int iError)
{
    constexpr int iNotFound = 127;
    constexpr int iNotStarted = 126;
    return iError == ENOENT ? iNotFound : iNotStarted;
}

} // namespace LaunchSystem
