// Takes a thread through all that is traced.

#include <tessel/Tessel.h>

#include <atomic>
#include <thread>

namespace
{

class Worker : public tsl::Thread
{
public:
    ~Worker() override { static_cast<void>(Kill(1)); }

    void End() { m_bEnd = true; }

    /// The id of the thread once it is in its work.
    void AwaitWork() const
    {
        while (!m_bWorking)
            std::this_thread::yield();
    }

    void AwaitEnd() const
    {
        while (IsRunning())
            std::this_thread::yield();
    }

private:
    void Process() override
    {
        m_bWorking = true;
        while (!m_bEnd)
            tsl::OS::Sleep(1);
        if (m_bThrow)
            throw tsl::Exception(77, "thrown", "file", 1);
        m_bThrow = true;
    }

    std::atomic<bool> m_bWorking{false};
    std::atomic<bool> m_bEnd{false};
    bool m_bThrow = false;
};

} // namespace

int main()
{
    Worker oWorker;
    static_cast<void>(oWorker.Run());
    static_cast<void>(oWorker.Run()); // too early
    oWorker.End();
    oWorker.AwaitEnd();
    static_cast<void>(oWorker.Run()); // throws
    oWorker.AwaitEnd();

    Worker oKilled;
    static_cast<void>(oKilled.Run());
    oKilled.AwaitWork();
    return oKilled.Kill(5).GetErrorCode();
}
