#include "../LogFile.h"

#include <cstdlib>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr char NAME[] = "Logfile.txt";

/// A device may refuse what is written, as one that is always full does.
bool TakesBytes()
{
    int const iDevice = ::open(NAME, O_WRONLY | O_APPEND | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    bool const bTakes = iDevice >= 0 && ::write(iDevice, "\n", 1) == 1;
    if (iDevice >= 0)
        ::close(iDevice);
    return bTakes;
}

} // namespace

bool LogFile::Find()
{
    struct stat oNamed = {};
    if (::stat(NAME, &oNamed) != 0)
        return false;
    std::error_code oError;
    for (auto const & oEntry : std::filesystem::directory_iterator("/proc/self/fd", oError))
    {
        int const iDescriptor = std::atoi(oEntry.path().filename().c_str());
        struct stat oOpen = {};
        if (::fstat(iDescriptor, &oOpen) == 0 && oOpen.st_dev == oNamed.st_dev
            && oOpen.st_ino == oNamed.st_ino && (::fcntl(iDescriptor, F_GETFL) & O_APPEND) != 0)
            m_iDescriptor = iDescriptor;
    }
    return m_iDescriptor >= 0 && (!S_ISCHR(oNamed.st_mode) || TakesBytes());
}

bool LogFile::GetSize(std::int64_t & iSize) const
{
    struct stat oStatus = {};
    if (::fstat(m_iDescriptor, &oStatus) != 0 || !S_ISREG(oStatus.st_mode))
        return false;
    iSize = oStatus.st_size;
    return true;
}
