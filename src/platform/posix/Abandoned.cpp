#include "platform/posix/Abandoned.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>
#include <utility>

#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

namespace tsl::Platform
{

namespace
{

constexpr int LOOKS_AT_ONCE = 64;
constexpr std::int64_t NANOSECONDS_BETWEEN_QUERIES = 10'000'000;

/// A descriptor that is closed with the scope.
class DescriptorScope
{
public:
    explicit DescriptorScope(long iDescriptor) : m_iDescriptor(static_cast<int>(iDescriptor)) {}
    ~DescriptorScope()
    {
        if (IsOpen())
            ::close(m_iDescriptor);
    }
    DescriptorScope(DescriptorScope const &) = delete;
    DescriptorScope & operator=(DescriptorScope const &) = delete;

    bool IsOpen() const { return m_iDescriptor >= 0; }
    int Get() const { return m_iDescriptor; }

private:
    int m_iDescriptor;
};

/// What the proc file system tells of a process; zeros if it tells nothing.
struct ProcessStatus
{
    char cState = '\0';
    std::uint64_t iStartTime = 0;
};

ProcessStatus ReadStatus(int iProcessId)
{
    char aPath[32];
    std::snprintf(aPath, sizeof aPath, "/proc/%d/stat", iProcessId);
    DescriptorScope const oFile(::open(aPath, O_RDONLY | O_CLOEXEC));
    char aText[1024];
    ssize_t const iLength = oFile.IsOpen() ? ::read(oFile.Get(), aText, sizeof aText - 1) : 0;
    aText[iLength > 0 ? iLength : 0] = '\0';

    // The program's name before the state is in parentheses and may hold any byte. The start time is the
    // twentieth of the fields from the state on.
    ProcessStatus oStatus;
    unsigned long long iStartTime = 0;
    char const * const sFields = std::strrchr(aText, ')');
    if (sFields
        && std::sscanf(sFields + 1,
               " %c %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %llu",
               &oStatus.cState, &iStartTime)
               == 2)
        oStatus.iStartTime = iStartTime;
    return oStatus;
}

/// Reaps a child that has ended, if it is the one that was abandoned. False if that is to be tried again.
bool ReapEnded(ProcessRecord const & oRecord)
{
    // While the descriptor is open, it stands for the process that has the id now.
    DescriptorScope const oProcess(::syscall(SYS_pidfd_open, oRecord.iProcessId, 0));
    if (!oProcess.IsOpen())
        return errno == ESRCH;

    if (oRecord.iStartTime != 0)
    {
        std::uint64_t const iStartTime = ReadStatus(oRecord.iProcessId).iStartTime;
        if (iStartTime != oRecord.iStartTime)
            return iStartTime != 0; // another process, of which nothing is known here
    }
    siginfo_t oInfo{};
    static_cast<void>(::waitid(P_PIDFD, static_cast<id_t>(oProcess.Get()), &oInfo, WEXITED | WNOHANG));
    return true;
}

/// Whether nothing is left of the process, or not any more.
bool IsGone(ProcessRecord const & oRecord)
{
    siginfo_t oInfo{};
    if (::waitid(P_PID, static_cast<id_t>(oRecord.iProcessId), &oInfo, WEXITED | WNOHANG | WNOWAIT) != 0)
        return errno == ECHILD; // reaped by somebody else
    return oInfo.si_pid != 0 && ReapEnded(oRecord);
}

/// A circle of records, known by its last one. Used by one thread at a time.
class Circle
{
public:
    explicit Circle(ProcessRecord * pLast) : m_pLast(pLast) {}
    ~Circle()
    {
        while (m_pLast)
            DropFirst();
    }
    Circle(Circle const &) = delete;
    Circle & operator=(Circle const &) = delete;

    ProcessRecord * GetFirst() const { return m_pLast ? m_pLast->pNext : nullptr; }
    void MoveFirstToEnd() { m_pLast = m_pLast->pNext; }

    void DropFirst()
    {
        std::unique_ptr<ProcessRecord> const pFirst(m_pLast->pNext);
        m_pLast = pFirst.get() == m_pLast ? nullptr : m_pLast;
        if (m_pLast)
            m_pLast->pNext = pFirst->pNext;
    }

    /// Puts another circle behind.
    void Append(ProcessRecord * pLast)
    {
        if (!pLast)
            return;
        if (m_pLast)
            std::swap(m_pLast->pNext, pLast->pNext);
        m_pLast = pLast;
    }

    ProcessRecord * Release() { return std::exchange(m_pLast, nullptr); }
    bool IsEmpty() const { return m_pLast == nullptr; }

private:
    ProcessRecord * m_pLast;
};

/// All abandoned children. There is no lock: whoever works on the circle takes it as a whole, and a process
/// that is forked off meanwhile does without it.
class AbandonedProcesses
{
public:
    constexpr AbandonedProcesses() = default;
    ~AbandonedProcesses() { Circle const oFreed(Take()); }
    AbandonedProcesses(AbandonedProcesses const &) = delete;
    AbandonedProcesses & operator=(AbandonedProcesses const &) = delete;

    bool IsEmpty() const { return m_pLast.load(std::memory_order_relaxed) == nullptr; }
    ProcessRecord * Take() { return m_pLast.exchange(nullptr, std::memory_order_acq_rel); }

    void PutBack(Circle & oCircle)
    {
        while (!oCircle.IsEmpty())
        {
            ProcessRecord * pNone = nullptr;
            ProcessRecord * const pLast = oCircle.Release();
            if (m_pLast.compare_exchange_strong(pNone, pLast, std::memory_order_acq_rel))
                return;
            oCircle.Append(pLast);
            oCircle.Append(Take());
        }
    }

private:
    std::atomic<ProcessRecord *> m_pLast{nullptr};
};

// The first of the library's static objects, whatever the order of linking, so that it is destroyed last: the
// destructors of others abandon processes.
[[gnu::init_priority(101)]] constinit AbandonedProcesses g_oAbandoned;

// When the last one was looked at, by a clock that is read without a system call.
constinit std::atomic<std::int64_t> g_iLastLook{0};

std::int64_t GetCoarseTime()
{
    timespec oNow{};
    ::clock_gettime(CLOCK_MONOTONIC_COARSE, &oNow);
    return std::int64_t{oNow.tv_sec} * 1'000'000'000 + oNow.tv_nsec;
}

} // namespace

SharedFlag::~SharedFlag()
{
    if (m_pFlag)
        ::munmap(m_pFlag, sizeof *m_pFlag);
}

int SharedFlag::Make()
{
    void * const pMemory =
        ::mmap(nullptr, sizeof *m_pFlag, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (pMemory == MAP_FAILED)
        return errno;
    m_pFlag = new (pMemory) std::atomic<bool>(false);
    return 0;
}

bool IsHeldAtStart(ProcessRecord const & oRecord)
{
    if (!oRecord.oContinued.IsMade() || oRecord.oContinued.IsSet())
        return false;

    // One that was continued just now has had no time to set the flag, but is not stopped any more.
    char const cState = ReadStatus(oRecord.iProcessId).cState;
    return cState == 'T' || cState == '\0';
}

void Abandon(std::unique_ptr<ProcessRecord> pRecord)
{
    pRecord->iStartTime = ReadStatus(pRecord->iProcessId).iStartTime;
    pRecord->pNext = pRecord.get();
    Circle oNew(pRecord.release());
    g_oAbandoned.PutBack(oNew);
}

void ReapAbandoned()
{
    if (g_oAbandoned.IsEmpty()) [[likely]]
        return;

    g_iLastLook.store(GetCoarseTime(), std::memory_order_relaxed);
    Circle oCircle(g_oAbandoned.Take());
    ProcessRecord const * pFirstKept = nullptr;
    for (int i = 0; i < LOOKS_AT_ONCE && oCircle.GetFirst() != pFirstKept; ++i)
    {
        if (IsGone(*oCircle.GetFirst()))
            oCircle.DropFirst();
        else
        {
            if (!pFirstKept)
                pFirstKept = oCircle.GetFirst();
            oCircle.MoveFirstToEnd();
        }
    }
    g_oAbandoned.PutBack(oCircle);
}

void ReapAbandonedAtTimes()
{
    if (g_oAbandoned.IsEmpty()) [[likely]]
        return;
    if (GetCoarseTime() - g_iLastLook.load(std::memory_order_relaxed) >= NANOSECONDS_BETWEEN_QUERIES)
        ReapAbandoned();
}

} // namespace tsl::Platform
