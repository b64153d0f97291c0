#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

/// Wakes one thread that waits for events of many others. Any thread may ring.
class Bell
{
public:
    void Ring()
    {
        {
            std::lock_guard const oScope(m_oLock);
            m_bRung = true;
        }
        m_oCondition.notify_one();
    }

    /// Returns when the bell has rung since the last call, or after the time-out.
    void Wait(std::chrono::milliseconds iTimeout)
    {
        std::unique_lock oScope(m_oLock);
        m_oCondition.wait_for(oScope, iTimeout, [&] { return m_bRung; });
        m_bRung = false;
    }

private:
    std::mutex m_oLock;
    std::condition_variable m_oCondition;
    bool m_bRung = false;
};
