#pragma once

#include <atomic>

#include <signal.h>
#include <time.h>

namespace tsl::Platform
{

/// A timer that sends a signal to one thread. Unlike a signal that the asking thread sends, it arrives in
/// time however busy the processors are, and signals do not queue up.
class DelayedSignal
{
public:
    DelayedSignal() = default;
    ~DelayedSignal() { End(); }
    DelayedSignal(DelayedSignal const &) = delete;
    DelayedSignal & operator=(DelayedSignal const &) = delete;

    /// Creates the timer. Has no effect if the system has none left; Send then returns false.
    void Begin(int iSignal, unsigned long iThreadId)
    {
        End();
        sigevent oEvent = {};
        oEvent.sigev_notify = SIGEV_THREAD_ID;
        oEvent.sigev_signo = iSignal;
        oEvent._sigev_un._tid = static_cast<pid_t>(iThreadId);
        timer_t hTimer = {};
        if (::timer_create(CLOCK_MONOTONIC, &oEvent, &hTimer) != 0)
            return;
        m_hTimer.store(hTimer, std::memory_order_relaxed);
        m_bTimer.store(true, std::memory_order_release);
    }

    void End()
    {
        if (m_bTimer.exchange(false, std::memory_order_acquire))
            ::timer_delete(m_hTimer.load(std::memory_order_relaxed));
    }

    /// Sends the signal after iNanoseconds, which must be less than a second and not 0. Replaces a request
    /// that is still pending. Safe in a signal handler. False if there is no timer.
    bool Send(long iNanoseconds) const
    {
        itimerspec const oTime{{}, {0, iNanoseconds}};
        return m_bTimer.load(std::memory_order_acquire)
               && ::timer_settime(m_hTimer.load(std::memory_order_relaxed), 0, &oTime, nullptr) == 0;
    }

private:
    std::atomic<timer_t> m_hTimer{};
    std::atomic<bool> m_bTimer{false};
};

} // namespace tsl::Platform
