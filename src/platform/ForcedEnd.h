#pragma once

#include "platform/ThreadPresence.h"
#include "platform/Threads.h"

#include <atomic>
#include <cstdint>

namespace tsl
{

/// Per-thread state for Thread::Kill (see Platform::AskToEnd): a thread is not killed while it holds a lock.
/// Only the thread itself and a signal handler on it use the state, so signal fences suffice to order the
/// changes.
struct ForcedEndState
{
    enum EWait : int
    {
        eNone,
        eForTime, ///< it may be killed: it holds nothing there that others need
        eForLock  ///< waits for the lock that was added last and is not held yet
    };

    /// The number of locks that the thread holds or is about to take; a NoKillScope counts as one.
    std::atomic<unsigned int> iLocks{0};
    std::atomic<EWait> eWait{eNone};

    /// The thread was asked to end, but could not at that moment.
    std::atomic<bool> bWanted{false};

    /// What other threads may read; null until the first lock.
    ThreadPresence * pPresence = nullptr;

    /// A number that no other thread has or had, in this process and in those that it was forked from. 0
    /// until the first lock.
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

/// The state of the calling thread.
extern constinit thread_local ForcedEndState t_oForcedEnd;

/// Ends the calling thread here if it was asked to end. Operations of the library call this where they begin
/// or return: a thread that spends nearly all its time in the library could not be killed otherwise.
///
/// @param pReturn the return address of the operation
inline void EndHereIfWanted(void const * pReturn)
{
    if (t_oForcedEnd.bWanted.load(std::memory_order_relaxed)) [[unlikely]]
        Platform::EndThisThreadIf(pReturn);
}

/// Keeps the calling thread from being killed, and others from forking, until the end of the scope.
class NoKillScope
{
public:
    NoKillScope() { t_oForcedEnd.AddLock(); }
    ~NoKillScope() { t_oForcedEnd.RemoveLock(); }
    NoKillScope(NoKillScope const &) = delete;
    NoKillScope & operator=(NoKillScope const &) = delete;
};

/// Lets other threads fork while the calling thread, which may hold locks, waits for a thread. That thread
/// may itself be waiting for a fork to finish.
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

/// Marks that the calling thread waits for the lock that it has added last. If that is its only lock, others
/// may fork.
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

/// Marks that the calling thread is in a call of the global bus, until the end of the scope.
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

/// Marks what the calling thread waits for, until the end of the scope.
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
    /// Not always eNone: a signal handler of the program may interrupt a wait and wait itself.
    ForcedEndState::EWait m_eBefore;
};

} // namespace tsl
