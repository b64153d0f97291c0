#pragma once

#include "platform/ThreadPresence.h"
#include "platform/Waiting.h"

#include <atomic>

namespace tsl::Platform
{

/// A mutex that needs no initialisation at run time, unlike that of some standard libraries. The member functions
/// have the names that std::lock_guard needs.
class PlainLock
{
public:
    constexpr PlainLock() = default;
    PlainLock(PlainLock const &) = delete;
    PlainLock & operator=(PlainLock const &) = delete;

    void lock()
    {
        int iExpected = FREE;
        if (m_iState.compare_exchange_strong(iExpected, HELD, std::memory_order_acquire))
            return;
        while (m_iState.exchange(WANTED, std::memory_order_acquire) != FREE && !Presence::AreOthersGone())
            WaitWhile(m_iState, WANTED);
    }

    void unlock()
    {
        if (m_iState.exchange(FREE, std::memory_order_release) == WANTED)
            WakeOne(m_iState);
    }

private:
    static constexpr int FREE = 0;
    static constexpr int HELD = 1;
    static constexpr int WANTED = 2; ///< held, and other threads may be waiting

    std::atomic<int> m_iState{FREE};
};

} // namespace tsl::Platform
