#include "platform/Processes.h"

#include "platform/posix/Abandoned.h"
#include "platform/posix/Descriptor.h"
#include "platform/posix/Spawn.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <memory>
#include <utility>

#include <poll.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tsl::Platform
{

namespace
{

constexpr int EXIT_CODE_LOST = -1;
constexpr int EXIT_CODE_SIGNAL = 128;

int GetHandle(Process const & oProcess)
{
    return static_cast<int>(oProcess.iHandle);
}

int PollProcess(Process const & oProcess, short iEvents, int iTimeout, bool & bReady)
{
    pollfd oPoll{GetHandle(oProcess), iEvents, 0};
    return Poll(&oPoll, 1, iTimeout, bReady);
}

/// Opens a handle to a child that has just been started. The handle refers to that child even if another
/// process gets its id later.
int OpenProcess(pid_t iProcess, Process & oProcess)
{
    int iHandle = static_cast<int>(::syscall(SYS_pidfd_open, iProcess, 0));
    int iError = iHandle < 0 ? errno : MoveAboveStreams(iHandle);
    oProcess = {.iProcessId = iProcess, .iHandle = iHandle};
    if (iError == ESRCH)
    {
        // It has ended, and another part of the program has reaped it by a wait for any child.
        oProcess.bEnded = true;
        oProcess.iExitCode = EXIT_CODE_LOST;
        iError = 0;
    }
    else if (iError != 0)
    {
        ::kill(iProcess, SIGKILL);
        while (::waitpid(iProcess, nullptr, 0) < 0 && errno == EINTR)
        {
        }
        oProcess = Process();
    }
    return iError;
}

/// Uses the handle: the id may belong to another process by now.
int SendSignal(Process const & oProcess, int iSignal)
{
    return ::syscall(SYS_pidfd_send_signal, GetHandle(oProcess), iSignal, nullptr, 0) == 0 ? 0 : errno;
}

/// Whether the system reaps the program's children itself as soon as they end.
bool AreChildrenIgnored()
{
    struct sigaction oAction = {};
    ::sigaction(SIGCHLD, nullptr, &oAction);
    return oAction.sa_handler == SIG_IGN || (oAction.sa_flags & SA_NOCLDWAIT) != 0;
}

/// The kernel's struct pidfd_info, which has an exit status since version 6.15.
struct ProcessInfo
{
    static constexpr std::uint64_t EXIT = 1u << 3;

    std::uint64_t iMask = EXIT;
    std::uint64_t iControlGroup = 0;
    std::array<std::uint32_t, 11> aIds{};
    std::int32_t iStatus = 0;
};

/// The wait status of a process that was reaped elsewhere. False if the kernel does not report it.
bool ReadLostStatus(Process const & oProcess, int & iStatus)
{
    // The status is available after the process is gone, which is a little later than its end.
    constexpr int iTimeout = 100;
    bool bGone = false;
    ProcessInfo oInfo;
    if (PollProcess(oProcess, 0, iTimeout, bGone) != 0 || !bGone
        || ::ioctl(GetHandle(oProcess), _IOWR(0xFF, 11, ProcessInfo), &oInfo) != 0
        || !(oInfo.iMask & ProcessInfo::EXIT))
        return false;

    iStatus = oInfo.iStatus;
    return true;
}

void SetExited(Process & oProcess, int iExitCode)
{
    oProcess.bEnded = true;
    oProcess.iExitCode = iExitCode;
}

void SetSignalled(Process & oProcess, int iSignal)
{
    oProcess.bEnded = true;
    if (!oProcess.bKilled || iSignal != SIGKILL)
        oProcess.iExitCode = EXIT_CODE_SIGNAL + iSignal;
}

/// Sets the exit code of a process that was reaped elsewhere, or by the system itself.
void SetLost(Process & oProcess)
{
    int iStatus = 0;
    if (!ReadLostStatus(oProcess, iStatus))
        SetExited(oProcess, EXIT_CODE_LOST);
    else if (WIFEXITED(iStatus))
        SetExited(oProcess, WEXITSTATUS(iStatus));
    else
        SetSignalled(oProcess, WTERMSIG(iStatus));
}

/// Reaps the process if it has ended.
int Reap(Process & oProcess)
{
    if (oProcess.bEnded)
        return 0;

    siginfo_t oInfo{};
    if (::waitid(P_PIDFD, static_cast<id_t>(oProcess.iHandle), &oInfo, WEXITED | WNOHANG) == 0)
    {
        if (oInfo.si_pid != 0)
        {
            if (oInfo.si_code == CLD_EXITED)
                SetExited(oProcess, oInfo.si_status);
            else
                SetSignalled(oProcess, oInfo.si_status);
        }
        return 0;
    }
    if (errno != ECHILD)
        return errno;

    bool bEnded = false;
    int const iError = PollProcess(oProcess, POLLIN, 0, bEnded);
    if (bEnded)
        SetLost(oProcess);
    return iError;
}

/// Whether it is a child of this process that nobody has reaped. The children of a parent are no children of
/// a process that it forks.
bool IsOwnChild(Process const & oProcess)
{
    siginfo_t oInfo{};
    return ::waitid(P_PIDFD, static_cast<id_t>(oProcess.iHandle), &oInfo, WEXITED | WNOHANG | WNOWAIT) == 0;
}

} // namespace

int StartProcess(ProcessStart const & oStart, Process & oProcess)
{
    ReapAbandoned();
    auto pRecord = std::make_unique<ProcessRecord>();
    if (oStart.bSuspended)
        if (int const iError = pRecord->oContinued.Make())
            return iError;

    // A child that the system reaps itself must not end before there is a handle to it, so it starts
    // suspended.
    bool const bStopFirst = oStart.bSuspended || AreChildrenIgnored();
    int & iProcess = pRecord->iProcessId;
    int const iStartError =
        bStopFirst ? SpawnSuspended(oStart, pRecord->oContinued, iProcess) : Spawn(oStart, iProcess);
    int const iError = iStartError != 0 ? iStartError : OpenProcess(iProcess, oProcess);
    if (iError != 0)
        return iError;

    oProcess.pRecord = pRecord.release();
    if (bStopFirst && !oStart.bSuspended)
        SendSignal(oProcess, SIGCONT);
    return 0;
}

void CloseProcess(Process & oProcess)
{
    ReapAbandoned();
    if (!oProcess.IsOpen())
        return;

    Process oLast = std::exchange(oProcess, Process());
    std::unique_ptr<ProcessRecord> pRecord(oLast.pRecord);
    bool bRuns = Reap(oLast) == 0 && !oLast.bEnded && IsOwnChild(oLast);
    if (bRuns && IsHeldAtStart(*pRecord))
    {
        EndProcess(oLast);
        bRuns = Reap(oLast) == 0 && !oLast.bEnded;
    }
    if (oLast.iHandle != -1)
        ::close(GetHandle(oLast));
    if (bRuns)
        Abandon(std::move(pRecord));
}

void EndProcess(Process & oProcess)
{
    // A process that a debugger or a frozen control group keeps may take longer; it is reaped later.
    constexpr int iTimeout = 1000;
    bool bEnded = false;
    if (KillProcess(oProcess, 0) == 0)
        static_cast<void>(WaitForProcess(oProcess, iTimeout, bEnded));
}

int GetExitCode(Process & oProcess, int & iExitCode)
{
    ReapAbandonedAtTimes();
    int const iError = Reap(oProcess);
    if (iError == 0)
        iExitCode = oProcess.bEnded ? oProcess.iExitCode : EXIT_CODE_ACTIVE;
    return iError;
}

int KillProcess(Process & oProcess, int iExitCode)
{
    if (oProcess.bEnded)
        return ESRCH;
    if (int const iError = SendSignal(oProcess, SIGKILL))
        return iError;

    oProcess.bKilled = true;
    oProcess.iExitCode = iExitCode;
    return 0;
}

int WaitForProcess(Process const & oProcess, int iTimeout, bool & bEnded)
{
    bEnded = oProcess.bEnded;
    return bEnded ? 0 : PollProcess(oProcess, POLLIN, iTimeout, bEnded);
}

} // namespace tsl::Platform
