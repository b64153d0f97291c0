#include "platform/ThreadPresence.h"

#include "platform/ForcedEnd.h"
#include "platform/PlainLock.h"
#include "platform/ThreadList.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace tsl::Presence
{

namespace
{

// Microseconds.
constexpr int TIMEOUT = 2'000'000;
constexpr int TIMEOUT_FOR_WAITER = 50'000;   ///< for a thread that may be waiting for the calling one
constexpr int EXISTENCE_CHECK_DELAY = 2'000; ///< then it is checked whether the thread still exists
constexpr int SLEEP_FIRST = 20;
constexpr int SLEEP_MAX = 1'000;
constexpr int SLEEP_COUNTED_MAX = 10'000; ///< the most that one sleep counts

constexpr int REMOVE_INTERVAL = 64;

/// All threads that have ever held a lock of the library, except for those that are known to have ended.
struct List
{
    Platform::PlainLock oLock;
    std::uint64_t iLastThread = 0;
    int iLastLiving = 0;

    // The used places; also read without the lock.
    std::atomic<int> iCount{0};
    ThreadPresence aThreads[THREADS_MAX];

    // Shared by all threads beyond the capacity; nobody reads it.
    ThreadPresence oUnlisted;
};

constinit List g_oList;

/// Sleeps, and returns how long that took: on a busy machine it is longer. The result is limited to
/// SLEEP_COUNTED_MAX, so that time for which the whole process was stopped hardly counts.
int SleepFor(int iMicroseconds)
{
    auto const oBegin = std::chrono::steady_clock::now();
    std::this_thread::sleep_for(std::chrono::microseconds(iMicroseconds));
    auto const oSpent =
        std::chrono::ceil<std::chrono::microseconds>(std::chrono::steady_clock::now() - oBegin);
    return static_cast<int>(std::min<std::chrono::microseconds::rep>(oSpent.count(), SLEEP_COUNTED_MAX));
}

class ListScope
{
public:
    ListScope() { LockList(); }
    ~ListScope() { UnlockList(); }
    ListScope(ListScope const &) = delete;
    ListScope & operator=(ListScope const &) = delete;
};

bool Exists(ThreadPresence const & oThread)
{
    unsigned long const iThreadId = oThread.iThreadId.load(std::memory_order_relaxed);
    return iThreadId != 0 && ThreadExists(iThreadId);
}

void Reset(ThreadPresence & oThread, unsigned long iThreadId)
{
    oThread.bLocking.store(false, std::memory_order_relaxed);
    oThread.iWaits.store(0, std::memory_order_relaxed);
    oThread.iVisits.store(0, std::memory_order_relaxed);
    oThread.iThreadId.store(iThreadId, std::memory_order_relaxed);
}

/// Frees the places of threads that no longer exist.
void RemoveEnded()
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

/// The caller holds the list's lock.
ThreadPresence & FindPlace()
{
    if (ThreadPresence * const pFree = FindFree())
        return *pFree;

    // Threads do not report their end: a thread-local destructor would keep the library loaded until then. So
    // the list is cleaned when it has grown.
    int const iCount = g_oList.iCount.load(std::memory_order_relaxed);
    if (iCount >= std::min(2 * g_oList.iLastLiving + REMOVE_INTERVAL, THREADS_MAX))
    {
        RemoveEnded();
        if (ThreadPresence * const pFree = FindFree())
            return *pFree;
    }
    if (iCount == THREADS_MAX)
        return g_oList.oUnlisted;
    g_oList.iCount.store(iCount + 1, std::memory_order_release);
    return g_oList.aThreads[iCount];
}

/// Waits for other threads, one after the other, TIMEOUT microseconds at most in all.
class ThreadWaiter
{
public:
    /// Waits until fIsBusy has been false for each listed thread except for the calling one. False after the
    /// time is up.
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
        for (int iWaited = 0, iSlept = 0; fIsBusy(oThread, iWaited); iWaited += iSlept)
        {
            if (m_iSpent >= TIMEOUT)
                return false;
            if (iWaited >= EXISTENCE_CHECK_DELAY && !Exists(oThread))
                return true;
            iSlept = SleepFor(std::min(iWaited + SLEEP_FIRST, SLEEP_MAX));
            m_iSpent += iSlept;
        }
        return true;
    }

    int m_iSpent = 0;
};

bool IsLocking(ThreadPresence const & oThread)
{
    return oThread.bLocking.load(std::memory_order_acquire);
}

bool IsInBus(ThreadPresence const & oThread)
{
    return oThread.iVisits.load(std::memory_order_acquire) > 0;
}

bool IsInBusWithLock(ThreadPresence const & oThread)
{
    return IsInBus(oThread) && IsLocking(oThread);
}

/// Decides whether to wait for a thread: as long as fIsBusy is true. But if the calling thread holds a lock,
/// the other thread may be waiting for that one, and its wait would not end. So if the other thread is in one
/// and the same wait for a lock for TIMEOUT_FOR_WAITER, and fIsBusyWaiter is false, it counts as not busy.
class BusyCheck
{
public:
    using Check = bool (*)(ThreadPresence const & oThread);

    BusyCheck(Check fIsBusy, Check fIsBusyWaiter) : m_fIsBusy(fIsBusy), m_fIsBusyWaiter(fIsBusyWaiter) {}

    bool operator()(ThreadPresence const & oThread, int iWaited)
    {
        unsigned int const iWaits = oThread.iWaits.load(std::memory_order_acquire);
        if (!m_bHolding || iWaited == 0 || iWaits != m_iWaits || iWaits % 2 == 0 || m_fIsBusyWaiter(oThread))
        {
            m_iWaits = iWaits;
            m_iSince = iWaited;
        }
        return m_fIsBusy(oThread) && iWaited - m_iSince < TIMEOUT_FOR_WAITER;
    }

private:
    bool const m_bHolding = t_oForcedEnd.iLocks.load(std::memory_order_relaxed) > 0;
    Check m_fIsBusy;
    Check m_fIsBusyWaiter;
    unsigned int m_iWaits = 0;
    int m_iSince = 0;
};

} // namespace

void LockList()
{
    g_oList.oLock.lock();
}

void UnlockList()
{
    g_oList.oLock.unlock();
}

std::uint64_t GetLastThread()
{
    return g_oList.iLastThread;
}

void WaitUntilOthersHoldNoLock()
{
    ShowStores();
    ThreadWaiter().WaitForEach(BusyCheck(&IsLocking, [](ThreadPresence const &) { return false; }));
}

void KeepThisThread()
{
    for (int i = 0; i < g_oList.iCount.load(std::memory_order_relaxed); ++i)
        if (&g_oList.aThreads[i] != t_oForcedEnd.pPresence)
            Reset(g_oList.aThreads[i], 0);
    t_oForcedEnd.pPresence->iThreadId.store(AskThreadId(), std::memory_order_relaxed);
}

void Register(ForcedEndState & oState)
{
    ListScope const oScope;
    oState.iThread = ++g_oList.iLastThread;
    ThreadPresence & oPlace = FindPlace();
    Reset(oPlace, AskThreadId());
    oState.pPresence = &oPlace;
}

bool WaitUntilOthersLeaveBus()
{
    if (AreOthersGone())
        return true;
    ShowStores();
    return ThreadWaiter().WaitForEach(BusyCheck(&IsInBus, &IsInBusWithLock));
}

void Abandon(ThreadPresence * pPresence)
{
    if (pPresence)
        Reset(*pPresence, pPresence->iThreadId.load(std::memory_order_relaxed));
}

} // namespace tsl::Presence
