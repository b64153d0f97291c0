#include "../Processes.h"

#include "ProcessTable.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <set>

#include <signal.h>
#include <string.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Processes
{

namespace
{

/// A signal goes to whole groups, so that none of their processes gets away by starting another one meanwhile. False
/// if there are no such processes.
template<class Condition>
bool End(Force eForce, Condition const & fIsMeant)
{
    auto const pTable = ReadProcessTable();
    bool bAny = !pTable->bComplete;
    std::set<pid_t> oGroups;
    for (ProcessEntry const & oEntry : pTable->vEntries)
        if (!oEntry.bEnded && fIsMeant(oEntry))
        {
            bAny = true;
            oGroups.insert(oEntry.iGroup);
        }
    // A child that is just being started is still in the group of this program.
    oGroups.erase(::getpgrp());
    for (pid_t const iGroup : oGroups)
        if (eForce == Force::eKill)
            ::kill(-iGroup, SIGKILL);
        else if (eForce == Force::eAsk)
        {
            ::kill(-iGroup, SIGTERM);
            ::kill(-iGroup, SIGCONT); // One that stands still would not see it.
        }
    return bAny;
}

constexpr int MANY = 1'000'000;

int GetLimit(decltype(RLIMIT_NOFILE) eResource)
{
    rlimit oLimit = {};
    bool const bLimited = ::getrlimit(eResource, &oLimit) == 0 && oLimit.rlim_cur < static_cast<rlim_t>(MANY);
    return bLimited ? static_cast<int>(oLimit.rlim_cur) : MANY;
}

int CountEntries(std::filesystem::path const & oFolder)
{
    std::error_code oError;
    std::filesystem::directory_iterator const oEntries(oFolder, oError);
    return static_cast<int>(oError ? 0 : std::distance(begin(oEntries), end(oEntries)));
}

} // namespace

void AdoptOrphans()
{
    ::prctl(PR_SET_CHILD_SUBREAPER, 1L, 0L, 0L, 0L);
}

void ReapOrphans()
{
    for (ProcessEntry const & oEntry : ReadProcessTable()->vEntries)
    {
        // The first process of a job leads its session, and somebody else waits for it.
        bool const bOrphan = oEntry.iParent == ::getpid() && oEntry.iSession != oEntry.iProcess;
        if (bOrphan && oEntry.bEnded)
            ::waitpid(oEntry.iProcess, nullptr, WNOHANG);
    }
}

void Continue(int iProcess)
{
    ::kill(iProcess, SIGCONT);
}

bool HasEnded(int iProcess, int & iSignal)
{
    siginfo_t oInfo = {};
    if (::waitid(P_PID, static_cast<id_t>(iProcess), &oInfo, WEXITED | WNOHANG | WNOWAIT) != 0
        || oInfo.si_pid == 0)
        return false;
    iSignal = oInfo.si_code == CLD_EXITED ? 0 : oInfo.si_status;
    return true;
}

bool EndJob(int iFirstProcess, Force eForce)
{
    return End(eForce, [&](ProcessEntry const & oEntry) { return oEntry.iJob == iFirstProcess; });
}

bool EndAll(Force eForce)
{
    return End(eForce, [](ProcessEntry const &) { return true; });
}

std::string GetSignalName(int iSignal)
{
    char const * const sName = ::sigabbrev_np(iSignal);
    return sName ? std::string("SIG") + sName : "signal " + std::to_string(iSignal);
}

bool IsLackOfRoom(int iError)
{
    static constexpr std::array aErrors = {EMFILE, ENFILE, EAGAIN, ENOMEM};
    return std::find(aErrors.begin(), aErrors.end(), iError) != aErrors.end();
}

int GetFreeDescriptors()
{
    return GetLimit(RLIMIT_NOFILE) - CountEntries("/proc/self/fd");
}

int GetFreeProcesses()
{
    if (::geteuid() == 0)
        return MANY;
    int iUsed = 0;
    std::error_code oError;
    for (auto const & oEntry : std::filesystem::directory_iterator("/proc", oError))
    {
        struct stat oStatus = {};
        if (std::atoi(oEntry.path().filename().c_str()) > 0 && ::stat(oEntry.path().c_str(), &oStatus) == 0
            && oStatus.st_uid == ::getuid())
            iUsed += CountEntries(oEntry.path() / "task");
    }
    return GetLimit(RLIMIT_NPROC) - iUsed;
}

} // namespace Processes
