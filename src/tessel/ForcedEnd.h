#pragma once

#include "Platform.h"

#include <atomic>

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
        eForHold  ///< for what was counted last, which it does not hold yet
    };

    /// Locks that the thread holds or is about to take.
    std::atomic<unsigned int> iHolds{0};
    std::atomic<EWait> eWait{eNone};

    /// It was asked to end, at a moment that was not the right one.
    std::atomic<bool> bWanted{false};

    void BeginHold()
    {
        iHolds.store(iHolds.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
        std::atomic_signal_fence(std::memory_order_seq_cst);
    }

    void EndHold()
    {
        std::atomic_signal_fence(std::memory_order_seq_cst);
        iHolds.store(iHolds.load(std::memory_order_relaxed) - 1, std::memory_order_relaxed);
    }
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
class HoldScope
{
public:
    HoldScope() { t_oForcedEnd.BeginHold(); }
    ~HoldScope() { t_oForcedEnd.EndHold(); }
    HoldScope(HoldScope const &) = delete;
    HoldScope & operator=(HoldScope const &) = delete;
};

/// Tells that the calling thread waits, until the end of the scope.
class WaitScope
{
public:
    explicit WaitScope(ForcedEndState::EWait eWait)
    {
        t_oForcedEnd.eWait.store(eWait, std::memory_order_relaxed);
        std::atomic_signal_fence(std::memory_order_seq_cst);
    }
    ~WaitScope()
    {
        std::atomic_signal_fence(std::memory_order_seq_cst);
        t_oForcedEnd.eWait.store(ForcedEndState::eNone, std::memory_order_relaxed);
    }
    WaitScope(WaitScope const &) = delete;
    WaitScope & operator=(WaitScope const &) = delete;
};

} // namespace tsl
