#include "platform/ThreadPresence.h"

#include "platform/ForcedEnd.h"
#include "platform/Threads.h"

#include <algorithm>
#include <cerrno>
#include <chrono>

#include <linux/membarrier.h>
#include <pthread.h>
#include <sched.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

namespace tsl::Presence
{

// By itself on its cache line, since every lock reads it.
alignas(64) std::atomic<int> g_iForking{0};

namespace
{

// Microseconds.
constexpr int PATIENCE = 2'000'000;
constexpr int PATIENCE_WITH_WAITER = 50'000; ///< with a thread that may be waiting for the calling one
constexpr int PATIENCE_WITH_DEAD = 2'000;    ///< until it is asked whether a thread still exists
constexpr int NAP_FIRST = 20;
constexpr int NAP_LONGEST = 1'000;
constexpr int NAP_COUNTED = 10'000;     ///< what counts of one at most
constexpr int TIME_OF_A_STORE = 10'000; ///< longer by far than a processor keeps one to itself

constexpr int SWEEP_INTERVAL = 64;

alignas(64) std::atomic<unsigned int> g_iForks{0};

// The thread that forks, by its iThread.
std::atomic<std::uint64_t> g_iForker{0};

// Threads up to this number are of former processes, but for the one that forked this process off.
std::uint64_t g_iLost = 0;
std::uint64_t g_iSurvivor = 0;

/// All threads that have ever held something, but for those that were seen to be gone.
struct List
{
    std::atomic<bool> bLocked{false};
    std::uint64_t iLastThread = 0;
    int iLastLiving = 0;

    // From 0 on; also read without the lock.
    std::atomic<int> iCount{0};
    ThreadPresence aThreads[THREADS_MAX];

    // What has no place there: nobody reads it.
    ThreadPresence oOther;
};

constinit List g_oList;

/// Returns how long it was, which on a busy machine is longer. Of the time for which the process was stopped,
/// when nobody had an opportunity to go on, next to nothing counts.
int Nap(int iMicroseconds)
{
    auto const oBegin = std::chrono::steady_clock::now();
    timespec oRest{0, iMicroseconds * 1000L};
    while (::nanosleep(&oRest, &oRest) == -1 && errno == EINTR)
    {
    }
    auto const oSpent =
        std::chrono::ceil<std::chrono::microseconds>(std::chrono::steady_clock::now() - oBegin);
    return static_cast<int>(std::min<std::chrono::microseconds::rep>(oSpent.count(), NAP_COUNTED));
}

void LockList()
{
    while (g_oList.bLocked.exchange(true, std::memory_order_acquire))
        ::sched_yield();
}

void UnlockList()
{
    g_oList.bLocked.store(false, std::memory_order_release);
}

class ListScope
{
public:
    ListScope() { LockList(); }
    ~ListScope() { UnlockList(); }
    ListScope(ListScope const &) = delete;
    ListScope & operator=(ListScope const &) = delete;
};

unsigned long AskThreadId()
{
    return static_cast<unsigned long>(::syscall(SYS_gettid));
}

bool Exists(ThreadPresence const & oThread)
{
    unsigned long const iThreadId = oThread.iThreadId.load(std::memory_order_relaxed);
    return iThreadId != 0 && (::syscall(SYS_tgkill, ::getpid(), iThreadId, 0) == 0 || errno != ESRCH);
}

void Reset(ThreadPresence & oThread, unsigned long iThreadId)
{
    oThread.bLocking.store(false, std::memory_order_relaxed);
    oThread.iWaits.store(0, std::memory_order_relaxed);
    oThread.iVisits.store(0, std::memory_order_relaxed);
    oThread.iThreadId.store(iThreadId, std::memory_order_relaxed);
}

/// Gives free the places of threads that do not exist any more.
void Sweep()
{
    g_oList.iLastLiving = 0;
    for (int i = 0; i < g_oList.iCount.load(std::memory_order_relaxed); ++i)
        if (Exists(g_oList.aThreads[i]))
            ++g_oList.iLastLiving;
        else
            Reset(g_oList.aThreads[i], 0);
}

ThreadPresence * FindFree()
{
    auto * const pEnd = g_oList.aThreads + g_oList.iCount.load(std::memory_order_relaxed);
    auto * const pFree = std::find_if(g_oList.aThreads, pEnd,
        [](ThreadPresence const & oThread)
        { return oThread.iThreadId.load(std::memory_order_relaxed) == 0; });
    return pFree == pEnd ? nullptr : pFree;
}

/// Under the list's lock.
ThreadPresence & FindPlace()
{
    if (ThreadPresence * const pFree = FindFree())
        return *pFree;

    // Threads do not tell when they end: what would would keep the library in the process until then.
    int const iCount = g_oList.iCount.load(std::memory_order_relaxed);
    if (iCount >= std::min(2 * g_oList.iLastLiving + SWEEP_INTERVAL, THREADS_MAX))
    {
        Sweep();
        if (ThreadPresence * const pFree = FindFree())
            return *pFree;
    }
    if (iCount == THREADS_MAX)
        return g_oList.oOther;
    g_oList.iCount.store(iCount + 1, std::memory_order_release);
    return g_oList.aThreads[iCount];
}

bool PassBarrier()
{
    return ::syscall(SYS_membarrier, MEMBARRIER_CMD_PRIVATE_EXPEDITED, 0) == 0;
}

/// What another thread stores before it looks at a flag that was set before this call is seen after it, or else
/// that thread sees the flag.
void ShowStores()
{
    // For the calling thread as well, each of these is a full barrier.
    if (PassBarrier())
        return;
    ::syscall(SYS_membarrier, MEMBARRIER_CMD_REGISTER_PRIVATE_EXPEDITED, 0);
    if (!PassBarrier() && ::syscall(SYS_membarrier, MEMBARRIER_CMD_GLOBAL, 0) != 0)
        static_cast<void>(Nap(TIME_OF_A_STORE));
}

/// Waits for other threads, one after the other.
class Patience
{
public:
    /// Until the function is false for each thread in the list but the calling one.
    template<class Function>
    bool WaitForEach(Function fIsBusy)
    {
        int const iCount = g_oList.iCount.load(std::memory_order_acquire);
        for (int i = 0; i < iCount; ++i)
            if (&g_oList.aThreads[i] != t_oForcedEnd.pPresence && !WaitFor(g_oList.aThreads[i], fIsBusy))
                return false;
        return true;
    }

private:
    template<class Function>
    bool WaitFor(ThreadPresence & oThread, Function fIsBusy)
    {
        for (int iWaited = 0, iNap = 0; fIsBusy(oThread, iWaited); iWaited += iNap)
        {
            if (m_iSpent >= PATIENCE)
                return false;
            if (iWaited >= PATIENCE_WITH_DEAD && !Exists(oThread))
                return true;
            iNap = Nap(std::min(iWaited + NAP_FIRST, NAP_LONGEST));
            m_iSpent += iNap;
        }
        return true;
    }

    int m_iSpent = 0;
};

bool IsInside(ThreadPresence const & oThread)
{
    return oThread.bLocking.load(std::memory_order_acquire);
}

bool IsInBus(ThreadPresence const & oThread)
{
    return oThread.iVisits.load(std::memory_order_acquire) > 0;
}

bool IsInBusWithLock(ThreadPresence const & oThread)
{
    return IsInBus(oThread) && IsInside(oThread);
}

/// Whether a thread is busy in one way, unless it waits for a lock and is not busy in another. If the calling
/// thread holds any lock, that may be the one, and then the other's wait does not end.
class Busy
{
public:
    using Test = bool (*)(ThreadPresence const & oThread);

    Busy(Test fIsBusy, Test fIsBusyWaiter) : m_fIsBusy(fIsBusy), m_fIsBusyWaiter(fIsBusyWaiter) {}

    bool operator()(ThreadPresence const & oThread, int iWaited)
    {
        unsigned int const iWaits = oThread.iWaits.load(std::memory_order_acquire);
        if (!m_bHolding || iWaited == 0 || iWaits != m_iWaits || iWaits % 2 == 0 || m_fIsBusyWaiter(oThread))
        {
            m_iWaits = iWaits;
            m_iSince = iWaited;
        }
        return m_fIsBusy(oThread) && iWaited - m_iSince < PATIENCE_WITH_WAITER;
    }

private:
    bool const m_bHolding = t_oForcedEnd.iLocks.load(std::memory_order_relaxed) > 0;
    Test m_fIsBusy;
    Test m_fIsBusyWaiter;
    unsigned int m_iWaits = 0;
    int m_iSince = 0;
};

/// One fork at a time. Meanwhile the thread counts as outside: whatever it holds, it is in nothing of its own.
void TakeTurn()
{
    AllowForkScope const oScope;
    for (int iOther = 0; !g_iForking.compare_exchange_strong(iOther, 1); iOther = 0)
        g_iForking.wait(1);
    g_iForker.store(t_oForcedEnd.iThread, std::memory_order_relaxed);
}

void PrepareFork()
{
    if (!t_oForcedEnd.pPresence)
        Register(t_oForcedEnd);
    TakeTurn();
    LockList();
    ShowStores();
    Patience().WaitForEach(Busy(&IsInside, [](ThreadPresence const &) { return false; }));
}

void EndFork()
{
    UnlockList();
    g_iForker.store(0, std::memory_order_relaxed);
    g_iForking.store(0, std::memory_order_release);
    g_iForking.notify_all();
}

/// In the child the calling thread is the only one.
void BeginChild()
{
    g_iForks.fetch_add(1, std::memory_order_relaxed);
    g_iLost = g_oList.iLastThread;
    g_iSurvivor = t_oForcedEnd.iThread;
    for (int i = 0; i < g_oList.iCount.load(std::memory_order_relaxed); ++i)
        if (&g_oList.aThreads[i] != t_oForcedEnd.pPresence)
            Reset(g_oList.aThreads[i], 0);
    t_oForcedEnd.pPresence->iThreadId.store(AskThreadId(), std::memory_order_relaxed);
    Platform::KeepThisThreadInChild();
    EndFork();
}

} // namespace

void WatchForks()
{
    ::syscall(SYS_membarrier, MEMBARRIER_CMD_REGISTER_PRIVATE_EXPEDITED, 0);
    // It fails for want of memory only, and before main there is nobody who could be told.
    static_cast<void>(::pthread_atfork(&PrepareFork, &EndFork, &BeginChild));
}

unsigned int GetForkCount()
{
    return g_iForks.load(std::memory_order_relaxed);
}

void Register(ForcedEndState & oState)
{
    ListScope const oScope;
    oState.iThread = ++g_oList.iLastThread;
    ThreadPresence & oPlace = FindPlace();
    Reset(oPlace, AskThreadId());
    oState.pPresence = &oPlace;
}

void WaitForFork(ThreadPresence & oPresence)
{
    std::uint64_t const iThis = t_oForcedEnd.iThread;
    while (
        g_iForking.load(std::memory_order_seq_cst) != 0 && g_iForker.load(std::memory_order_relaxed) != iThis)
    {
        oPresence.bLocking.store(false, std::memory_order_release);
        g_iForking.wait(1);
        oPresence.bLocking.store(true, std::memory_order_seq_cst);
    }
}

bool WaitUntilOthersLeaveBus()
{
    ShowStores();
    return Patience().WaitForEach(Busy(&IsInBus, &IsInBusWithLock));
}

bool HasLostOwner(std::uint64_t iOwner)
{
    return iOwner <= g_iLost && iOwner != g_iSurvivor;
}

void Abandon(ThreadPresence * pPresence)
{
    if (pPresence)
        Reset(*pPresence, pPresence->iThreadId.load(std::memory_order_relaxed));
}

} // namespace tsl::Presence
