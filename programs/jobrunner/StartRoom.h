#pragma once

#include <atomic>
#include <chrono>

/// Whether it makes sense that a job waits for others when there are no descriptors or processes left for it.
class StartRoom
{
public:
    void AddJob() { ++m_iJobs; }
    void RemoveJob()
    {
        --m_iJobs;
        m_oLastEnd = std::chrono::steady_clock::now();
    }

    /// True while jobs run, and for some time after that, since the system may be full for other reasons.
    bool CanWait() const
    {
        constexpr std::chrono::seconds iPatience(10);
        return m_iJobs > 0 || std::chrono::steady_clock::now() < m_oLastEnd.load() + iPatience;
    }

private:
    std::atomic<int> m_iJobs{0};
    std::atomic<std::chrono::steady_clock::time_point> m_oLastEnd{std::chrono::steady_clock::now()};
};
