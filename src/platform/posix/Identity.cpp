#include "platform/Identity.h"

#include "platform/ThreadPresence.h"

#include <cerrno>
#include <string_view>
#include <utility>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tsl::Platform
{

namespace
{

constexpr char const * PROGRAM_LINK = "/proc/self/exe";
constexpr std::string_view MARK_OF_DELETED = " (deleted)";

/// The cached ids of a thread. Not valid after a fork.
struct Identity
{
    unsigned int iForkCount = 0;
    int iProcessId = 0;
    unsigned long iThreadId = 0;
};

Identity const & GetIdentity()
{
    static thread_local Identity oIdentity;
    unsigned int const iForkCount = Presence::GetForkCount();
    if (oIdentity.iForkCount != iForkCount || oIdentity.iProcessId == 0) [[unlikely]]
        oIdentity = {iForkCount, ::getpid(), static_cast<unsigned long>(::syscall(SYS_gettid))};
    return oIdentity;
}

bool IsSameFile(char const * sLeft, char const * sRight)
{
    struct stat oLeft = {};
    struct stat oRight = {};
    return ::stat(sLeft, &oLeft) == 0 && ::stat(sRight, &oRight) == 0 && oLeft.st_dev == oRight.st_dev
           && oLeft.st_ino == oRight.st_ino;
}

} // namespace

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

    // The system appends the mark if the file was removed. But the mark may also be part of the file's name.
    if (sBuffer.ends_with(MARK_OF_DELETED) && !IsSameFile(sBuffer.c_str(), PROGRAM_LINK))
        sBuffer.resize(sBuffer.size() - MARK_OF_DELETED.size());
    sPath = std::move(sBuffer);
    return 0;
}

int GetProcessId()
{
    return GetIdentity().iProcessId;
}

unsigned long GetThreadId()
{
    return GetIdentity().iThreadId;
}

} // namespace tsl::Platform
