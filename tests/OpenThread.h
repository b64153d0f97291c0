#pragma once

#include <tessel/Tessel.h>

#include <functional>
#include <latch>
#include <thread>
#include <utility>
#include <vector>

namespace tsltest
{

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
    std::vector<std::jthread> vThreads;
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
