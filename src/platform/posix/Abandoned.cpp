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

constexpr int CHECKS_AT_ONCE = 64;
constexpr std::int64_t CHECK_INTERVAL = 10'000'000; // nanoseconds

/// Owns a descriptor and closes it at the end of the scope.
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

/// The status of a process in the proc file system; zeros if there is none.
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

    // The program's name, before the state, is in parentheses and may contain any byte, so the last one is
    // searched. The start time is field 20, counted from the state.
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

/// Reaps a child that has ended, if it is the one that was abandoned. False if the caller has to try again.
bool ReapEnded(ProcessRecord const & oRecord)
{
    // As long as the descriptor is open, it refers to the process that has the id now.
    DescriptorScope const oProcess(::syscall(SYS_pidfd_open, oRecord.iProcessId, 0));
    if (!oProcess.IsOpen())
        return errno == ESRCH;

    if (oRecord.iStartTime != 0)
    {
        std::uint64_t const iStartTime = ReadStatus(oRecord.iProcessId).iStartTime;
        if (iStartTime != oRecord.iStartTime)
            return iStartTime != 0; // another process has the id
    }
    siginfo_t oInfo{};
    static_cast<void>(::waitid(P_PIDFD, static_cast<id_t>(oProcess.Get()), &oInfo, WEXITED | WNOHANG));
    return true;
}

/// Whether the process has been reaped, here or elsewhere.
bool IsGone(ProcessRecord const & oRecord)
{
    siginfo_t oInfo{};
    if (::waitid(P_PID, static_cast<id_t>(oRecord.iProcessId), &oInfo, WEXITED | WNOHANG | WNOWAIT) != 0)
        return errno == ECHILD; // reaped elsewhere
    return oInfo.si_pid != 0 && ReapEnded(oRecord);
}

/// A circular list of records, held by its last one. Used by one thread at a time.
class CircularList
{
public:
    explicit CircularList(ProcessRecord * pLast) : m_pLast(pLast) {}
    ~CircularList()
    {
        while (m_pLast)
            DropFirst();
    }
    CircularList(CircularList const &) = delete;
    CircularList & operator=(CircularList const &) = delete;

    ProcessRecord * GetFirst() const { return m_pLast ? m_pLast->pNext : nullptr; }
    void MoveFirstToEnd() { m_pLast = m_pLast->pNext; }

    void DropFirst()
    {
        std::unique_ptr<ProcessRecord> const pFirst(m_pLast->pNext);
        m_pLast = pFirst.get() == m_pLast ? nullptr : m_pLast;
        if (m_pLast)
            m_pLast->pNext = pFirst->pNext;
    }

    /// Appends another circular list.
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

/// All abandoned children. There is no lock: a thread takes the whole list out and puts it back afterwards. A
/// process that is forked in between has an empty list.
class AbandonedProcesses
{
public:
    constexpr AbandonedProcesses() = default;
    ~AbandonedProcesses() { CircularList const oFreed(Take()); }
    AbandonedProcesses(AbandonedProcesses const &) = delete;
    AbandonedProcesses & operator=(AbandonedProcesses const &) = delete;

    bool IsEmpty() const { return m_pLast.load(std::memory_order_relaxed) == nullptr; }
    ProcessRecord * Take() { return m_pLast.exchange(nullptr, std::memory_order_acq_rel); }

    void PutBack(CircularList & oList)
    {
        while (!oList.IsEmpty())
        {
            ProcessRecord * pNone = nullptr;
            ProcessRecord * const pLast = oList.Release();
            if (m_pLast.compare_exchange_strong(pNone, pLast, std::memory_order_acq_rel))
                return;
            oList.Append(pLast);
            oList.Append(Take());
        }
    }

private:
    std::atomic<ProcessRecord *> m_pLast{nullptr};
};

// init_priority makes it the first static object of the library, whatever the order of linking, so it is
// destroyed last: destructors of other static objects abandon processes.
[[gnu::init_priority(101)]] constinit AbandonedProcesses g_oAbandoned;

// The time of the last check, by a clock that is read without a system call.
constinit std::atomic<std::int64_t> g_iLastCheck{0};

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

    // A child that was continued a moment ago may not have set the flag yet, but is no longer stopped.
    char const cState = ReadStatus(oRecord.iProcessId).cState;
    return cState == 'T' || cState == '\0';
}

void Abandon(std::unique_ptr<ProcessRecord> pRecord)
{
    pRecord->iStartTime = ReadStatus(pRecord->iProcessId).iStartTime;
    pRecord->pNext = pRecord.get();
    CircularList oNew(pRecord.release());
    g_oAbandoned.PutBack(oNew);
}

void ReapAbandoned()
{
    if (g_oAbandoned.IsEmpty()) [[likely]]
        return;

    g_iLastCheck.store(GetCoarseTime(), std::memory_order_relaxed);
    CircularList oList(g_oAbandoned.Take());
    ProcessRecord const * pFirstKept = nullptr;
    for (int i = 0; i < CHECKS_AT_ONCE && oList.GetFirst() != pFirstKept; ++i)
    {
        if (IsGone(*oList.GetFirst()))
            oList.DropFirst();
        else
        {
            if (!pFirstKept)
                pFirstKept = oList.GetFirst();
            oList.MoveFirstToEnd();
        }
    }
    g_oAbandoned.PutBack(oList);
}

void ReapAbandonedAtTimes()
{
    if (g_oAbandoned.IsEmpty()) [[likely]]
        return;
    if (GetCoarseTime() - g_iLastCheck.load(std::memory_order_relaxed) >= CHECK_INTERVAL)
        ReapAbandoned();
}

} // namespace tsl::Platform
