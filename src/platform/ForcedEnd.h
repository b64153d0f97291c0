#pragma once

#include "platform/ThreadPresence.h"
#include "platform/Threads.h"

#include <atomic>
#include <cstdint>

namespace tsl
{

/// What a thread tells of itself for its forced end (see Platform::AskToEnd): it is not ended while it holds
/// something that others need. Only the thread itself and a signal handler on it use the state, so the
/// changes need no more than to stay in their order.
struct ForcedEndState
{
    enum EWait : int
    {
        eNone,
        eForTime, ///< nothing is lost if the thread ends
        eForLock  ///< for what was counted last, which it does not hold yet
    };

    /// Locks that the thread holds or is about to take.
    std::atomic<unsigned int> iLocks{0};
    std::atomic<EWait> eWait{eNone};

    /// It was asked to end, at a moment that was not the right one.
    std::atomic<bool> bWanted{false};

    /// What the others may read of it, null until its first hold.
    ThreadPresence * pPresence = nullptr;

    /// Tells it from every other thread that there is or was, in this process and in those that it was forked
    /// from. 0 until its first hold.
    std::uint64_t iThread = 0;

    void AddLock()
    {
        unsigned int const iFormer = iLocks.load(std::memory_order_relaxed);
        iLocks.store(iFormer + 1, std::memory_order_relaxed);
        std::atomic_signal_fence(std::memory_order_seq_cst);
        if (iFormer == 0)
            MarkLocking();
    }

    void RemoveLock()
    {
        unsigned int const iRest = iLocks.load(std::memory_order_relaxed) - 1;
        if (iRest == 0)
            MarkFree();
        std::atomic_signal_fence(std::memory_order_seq_cst);
        iLocks.store(iRest, std::memory_order_relaxed);
    }

    void MarkLocking()
    {
        if (!pPresence) [[unlikely]]
            Presence::Register(*this);
        pPresence->bLocking.store(true, std::memory_order_relaxed);
        std::atomic_signal_fence(std::memory_order_seq_cst);
        if (Presence::g_iForking.load(std::memory_order_relaxed) != 0) [[unlikely]]
            Presence::WaitForFork(*pPresence);
    }

    void MarkFree() { pPresence->bLocking.store(false, std::memory_order_release); }
};

/// That of the calling thread.
extern constinit thread_local ForcedEndState t_oForcedEnd;

/// Where the program calls an operation of the library, or where that returns: the thread ends here if this
/// is wanted. A thread that hardly ever leaves the library would go on for long without it.
///
/// @param pReturn where the operation returns to
inline void EndHereIfWanted(void const * pReturn)
{
    if (t_oForcedEnd.bWanted.load(std::memory_order_relaxed)) [[unlikely]]
        Platform::EndThisThreadIf(pReturn);
}

/// Keeps the calling thread from being ended until the end of the scope, even while it waits.
class NoKillScope
{
public:
    NoKillScope() { t_oForcedEnd.AddLock(); }
    ~NoKillScope() { t_oForcedEnd.RemoveLock(); }
    NoKillScope(NoKillScope const &) = delete;
    NoKillScope & operator=(NoKillScope const &) = delete;
};

/// The calling thread, in the middle of a hold, waits for another thread, which may wait for a fork.
class AllowForkScope
{
public:
    AllowForkScope()
    {
        if (m_bLocking)
            t_oForcedEnd.MarkFree();
    }
    ~AllowForkScope()
    {
        if (m_bLocking)
            t_oForcedEnd.MarkLocking();
    }
    AllowForkScope(AllowForkScope const &) = delete;
    AllowForkScope & operator=(AllowForkScope const &) = delete;

private:
    bool const m_bLocking = t_oForcedEnd.iLocks.load(std::memory_order_relaxed) > 0;
};

/// The calling thread waits for the lock that it has counted last.
class LockWaitScope
{
public:
    LockWaitScope()
    {
        CountWait();
        if (m_bFirst)
            t_oForcedEnd.MarkFree();
    }
    ~LockWaitScope()
    {
        CountWait();
        if (m_bFirst)
            t_oForcedEnd.MarkLocking();
    }
    LockWaitScope(LockWaitScope const &) = delete;
    LockWaitScope & operator=(LockWaitScope const &) = delete;

private:
    static void CountWait()
    {
        std::atomic<unsigned int> & iWaits = t_oForcedEnd.pPresence->iWaits;
        iWaits.store(iWaits.load(std::memory_order_relaxed) + 1, std::memory_order_release);
    }

    bool const m_bFirst = t_oForcedEnd.iLocks.load(std::memory_order_relaxed) == 1;
};

/// The calling thread is in the global bus until the end of the scope.
class BusVisit
{
public:
    BusVisit()
    {
        if (!t_oForcedEnd.pPresence) [[unlikely]]
            Presence::Register(t_oForcedEnd);
        Count(1);
        std::atomic_signal_fence(std::memory_order_seq_cst);
    }
    ~BusVisit() { Count(-1U); }
    BusVisit(BusVisit const &) = delete;
    BusVisit & operator=(BusVisit const &) = delete;

private:
    static void Count(unsigned int iChange)
    {
        std::atomic<unsigned int> & iVisits = t_oForcedEnd.pPresence->iVisits;
        iVisits.store(iVisits.load(std::memory_order_relaxed) + iChange, std::memory_order_release);
    }
};

/// Tells that the calling thread waits, until the end of the scope.
class WaitScope
{
public:
    explicit WaitScope(ForcedEndState::EWait eWait)
        : m_eBefore(t_oForcedEnd.eWait.load(std::memory_order_relaxed))
    {
        t_oForcedEnd.eWait.store(eWait, std::memory_order_relaxed);
        std::atomic_signal_fence(std::memory_order_seq_cst);
    }
    ~WaitScope()
    {
        std::atomic_signal_fence(std::memory_order_seq_cst);
        t_oForcedEnd.eWait.store(m_eBefore, std::memory_order_relaxed);
    }
    WaitScope(WaitScope const &) = delete;
    WaitScope & operator=(WaitScope const &) = delete;

private:
    /// What a signal handler of the program that waits as well has interrupted.
    ForcedEndState::EWait m_eBefore;
};

} // namespace tsl
