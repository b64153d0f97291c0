#pragma once

#include <tessel/Tessel.h>

#include <functional>
#include <utility>

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

} // namespace tsltest
