#pragma once

#include <tessel/Tessel.h>

#include <functional>
#include <latch>
#include <thread>
#include <utility>
#include <vector>

namespace tsltest
{

/// A std::thread that is joined at its end. Not every standard library has std::jthread.
class JoinedThread
{
public:
    explicit JoinedThread(std::function<void()> fWork) : m_oThread(std::move(fWork)) {}
    JoinedThread(JoinedThread && oSource) = default;
    ~JoinedThread()
    {
        if (m_oThread.joinable())
            m_oThread.join();
    }

private:
    std::thread m_oThread;
};

/// A thread that does what the test says, and is killed when its object is destroyed.
class OpenThread : public tsl::Thread
{
public:
    explicit OpenThread(std::function<void()> fWork = [] {}) : m_fWork(std::move(fWork)) {}
    ~OpenThread() override { End(); }

    void End()
    {
        while (Kill(1).GetErrorCode() == tsl::ERR::eTimeout)
        {
        }
    }

private:
    void Process() override { m_fWork(); }

    std::function<void()> m_fWork;
};

/// What a thread does that is to be killed.
inline void SleepForLong()
{
    tsl::OS::Sleep(1'000'000);
}

/// Does the work, which is given its number, on several threads at once, number 0 on the calling one.
template<class Work>
void RunOnThreads(int iThreads, Work const & fWork)
{
    std::latch oStart(iThreads);
    std::vector<JoinedThread> vThreads;
    for (int iThread = 1; iThread < iThreads; ++iThread)
        vThreads.emplace_back(
            [&, iThread]
            {
                oStart.arrive_and_wait();
                fWork(iThread);
            });
    oStart.arrive_and_wait();
    fWork(0);
}

} // namespace tsltest
