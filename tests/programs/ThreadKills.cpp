// Kills threads at random moments of all kinds of work, the number of times that is the argument, and shows
// then that all that they had in common still serves. With a second argument one more thread is started
// twice, one throws, and one tries to kill itself.

#include <tessel/ScopedLock.h>
#include <tessel/Tessel.h>

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <random>
#include <span>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <vector>

#include <poll.h>
#include <unistd.h>

using namespace tsl;

namespace
{

CriticalSectionMutex g_oLock;
DefaultPipe<String, CriticalSectionMutex, CloneByCopyConstructor<String>> g_oPipe;
long g_iUnderLock[2] = {};

void Compute()
{
    static volatile unsigned int iSink = 0;
    for (unsigned int i = 0; i < 1000; ++i)
        iSink = iSink + i;
}

void Allocate()
{
    for (std::size_t iSize = 16; iSize < 100'000; iSize = iSize * 3 / 2)
        std::free(std::malloc(iSize));
}

void Log()
{
    Support::DispatchDebugMessage("Kill", "a line that has to be whole", "ThreadKills.cpp", 1);

    // The file is to stay small.
    for (int i = 0; i < 30; ++i)
        Compute();
}

void Throw()
{
    try
    {
        throw std::runtime_error("thrown");
    }
    catch (std::exception const &)
    {
    }
}

void Print()
{
    std::ostringstream() << 1.5 << ' ' << 17;
    char aText[64];
    std::snprintf(aText, sizeof aText, "%g %d", 1.5, 17);
    std::fputs("", stdout);
}

void Send()
{
    g_oPipe.Send("text");
    delete g_oPipe.Receive();
}

void HoldLock()
{
    // Both counters are changed or none of them.
    WriteLock const oScope(g_oLock);
    ++g_iUnderLock[0];
    Compute();
    ++g_iUnderLock[1];
}

void Read()
{
    static int aEnds[2] = {};
    static bool const bOpen = ::pipe(aEnds) == 0;
    char cByte = 0;
    static_cast<void>(bOpen && ::read(aEnds[0], &cByte, 1) == 1);
}

void WaitForEvent()
{
    std::mutex oMutex;
    std::condition_variable oEvent;
    std::unique_lock oScope(oMutex);
    oEvent.wait(oScope, [] { return false; });
}

/// Does the work for ever, or once.
class Worker : public Thread
{
public:
    explicit Worker(std::function<void()> fWork) : m_fWork(std::move(fWork)) {}
    ~Worker() override { static_cast<void>(Kill(1)); }

    bool bForEver = true;

private:
    void Process() override
    {
        do
            m_fWork();
        while (bForEver);
    }

    std::function<void()> m_fWork;
};

void Demand(bool bHolds, char const * sWhat)
{
    if (bHolds)
        return;
    std::printf("%s\n", sWhat);
    std::_Exit(1);
}

void (*const g_aWorks[])() = {&Compute, &Allocate, &Log, &Throw, &Print, &Send, &HoldLock, // come to an end
    [] { OS::Sleep(1'000'000); }, &Read, &WaitForEvent};

/// Lets the thread run for a moment and kills it.
void Kill(Worker & oWorker, std::mt19937 & oRandom)
{
    // Some do not even come to their begin.
    if (oRandom() % 4 > 0)
        std::this_thread::sleep_for(std::chrono::microseconds(oRandom() % 100));

    Demand(oWorker.Kill(1).IsOk(), "kill");
    Demand(!oWorker.IsRunning() && oWorker.GetExitCode() == -1 && oWorker.GetThreadId() == 0, "killed");
}

/// Does the work twice on threads that come to their ends.
void RunToTheEnd(std::function<void()> fWork)
{
    Worker oWorker(std::move(fWork));
    oWorker.bForEver = false;
    for (int i = 0; i < 2; ++i)
    {
        Demand(oWorker.Run().IsOk(), "run in the end");
        while (oWorker.IsRunning())
            OS::Sleep(1);
    }
}

/// A thread that wants to kill itself.
void KillFromWithin()
{
    Worker * pWorker = nullptr;
    Worker oWorker([&] { Demand(pWorker->Kill(1).IsError(), "killed itself"); });
    pWorker = &oWorker;
    oWorker.bForEver = false;
    Demand(oWorker.Run().IsOk(), "run to kill itself");
    while (oWorker.IsRunning())
        OS::Sleep(1);
}

/// Everything once more, on a thread and here.
void DemandThatAllServes()
{
    {
        WriteLock const oScope(g_oLock);
        Demand(g_iUnderLock[0] == g_iUnderLock[1], "ended under the lock");
    }
    for (auto const fWork : std::span(g_aWorks).first(7))
    {
        RunToTheEnd(fWork);
        fWork();
    }
}

} // namespace

int main(int iCount, char ** pArguments)
{
    std::vector<std::unique_ptr<Worker>> vWorkers;
    for (auto const fWork : g_aWorks)
        for (int iTwin = 0; iTwin < 2; ++iTwin)
            vWorkers.push_back(std::make_unique<Worker>(fWork));

    std::mt19937 oRandom(7);
    Worker * pLast = nullptr;
    for (int i = 0; i < std::atoi(pArguments[1]);)
    {
        // One more goes on, so that they get into each other's way.
        Worker & oWorker = *vWorkers[oRandom() % vWorkers.size()];
        if (oWorker.IsRunning())
            continue;
        Demand(oWorker.Run().IsOk(), "run");
        if (Worker * const pKilled = std::exchange(pLast, &oWorker))
        {
            Kill(*pKilled, oRandom);
            ++i;
        }
    }
    vWorkers.clear();
    DemandThatAllServes();
    if (iCount > 2)
    {
        Worker oWorker(&Compute);
        Demand(oWorker.Run().IsOk() && oWorker.Run().IsError(), "run twice");
        RunToTheEnd([] { Exception::Throw(Result(77, "thrown", Result::eCategoryDefault)); });
        KillFromWithin();
    }
    std::puts("ok");
    return 0;
}
