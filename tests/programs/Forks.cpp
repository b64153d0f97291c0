// Forks children, as many as the first argument says, while eight threads are busy with all that the library
// shares between threads, and prints "ok". Each child does everything itself, with the third argument's or ten
// seconds' time for it. The second argument tells where the forks come from: "main", "threads" (two of them at
// once), "callback" (a processor of the bus), or "fresh" (a process whose threads use everything for the first
// time).

#include "../OpenThread.h"
#include "../TestMessages.h"
#include "ProcessChecks.h"

#include <atomic>
#include <thread>
#include <vector>

#include <unistd.h>

using namespace tsl;
using namespace tsltest;

namespace
{

unsigned int g_iSeconds = 10;

void DoEverything()
{
    Require(UseBus(NumberMessage(7)), "bus");
    Require(ConvertValues(), "values");
    DateTimeElements oElements(2024, 1, 29, TimeZone::GetLocal());
    DateTime(oElements).GetElements(oElements);
    Require(oElements.m_iDay == 29, "elements");
    Require(OS::FormatError(ENOENT).IsError(), "error");

    TestProcessor const oProcessor;
    MessageDispatcher oDispatcher;
    Require(oDispatcher.Register(oProcessor, {Message::GetBaseType()}).IsOk(), "register");
    TaskFactory::Instance().Register(4711, [](TaskProcessor *) -> Task * { return nullptr; });
    TaskFactory::Instance().Unregister(4711);
}

[[noreturn]] void LiveAsChild(Thread & oThreadOfParent)
{
    ::alarm(g_iSeconds);
    DoEverything();
    {
        Child oChild("out x\\n", WITH_READERS);
        Require(RunToTheEnd(oChild), "child");
        Require(TakeLines(oChild, &CmdLine::ReceiveStdOut) == "x\n", "child's line");
    }
    // A thread of the parent is none of the child, and its object knows that.
    Require(!oThreadOfParent.IsRunning(), "thread of the parent");
    Require(oThreadOfParent.Run().IsOk(), "new thread");
    Require(oThreadOfParent.Kill(0).IsOk(), "kill");
    std::_Exit(0);
}

void Fork(Thread & oThreadOfParent)
{
    pid_t const iChild = ::fork();
    if (iChild == 0)
        LiveAsChild(oThreadOfParent);
    Require(WaitForEnd(iChild) == 0, "forked child");
}

/// Threads that do everything, again and again until they are destroyed, or once.
class BusyThreads
{
public:
    explicit BusyThreads(bool bOnce) : m_bStop(bOnce)
    {
        for (int i = 0; i < 8; ++i)
            m_vThreads.emplace_back(
                [this]
                {
                    do
                        DoEverything();
                    while (!m_bStop);
                });
    }
    ~BusyThreads() { m_bStop = true; }
    BusyThreads(BusyThreads const &) = delete;

private:
    std::atomic<bool> m_bStop;
    std::vector<std::jthread> m_vThreads;
};

void ForkFromHere(int iCount)
{
    OpenThread oSleeper(&SleepForLong);
    Require(oSleeper.Run().IsOk(), "sleeper");
    for (int i = 0; i < iCount; ++i)
    {
        LimitLog(i);
        Fork(oSleeper);
    }
}

void ForkFromCallBack(int iCount)
{
    OpenThread oSleeper(&SleepForLong);
    Require(oSleeper.Run().IsOk(), "sleeper");
    std::thread::id const oThis = std::this_thread::get_id();
    BusListener const oListener(Message::GetBaseType(),
        [&](Message const & oMessage, Result &)
        {
            auto const * const pNumber = dynamic_cast<NumberMessage const *>(&oMessage);
            if (pNumber && pNumber->iNumber == 1 && oThis == std::this_thread::get_id())
                Fork(oSleeper);
        });
    for (int i = 0; i < iCount; ++i)
    {
        LimitLog(i);
        Support::DispatchMessage(NumberMessage(1));
    }
}

/// In a process in which nothing has been used yet.
void ForkFresh()
{
    ::alarm(3 * g_iSeconds);
    BusyThreads const oThreads(true);
    pid_t aChildren[4];
    for (pid_t & iChild : aChildren)
    {
        iChild = ::fork();
        if (iChild == 0)
        {
            ::alarm(g_iSeconds);
            DoEverything();
            std::_Exit(0);
        }
    }
    for (pid_t const iChild : aChildren)
        Require(WaitForEnd(iChild) == 0, "child of a fresh process");
}

void ForkFreshProcesses(int iCount)
{
    for (int i = 0; i < iCount; ++i)
    {
        LimitLog(i);
        pid_t const iFresh = ::fork();
        if (iFresh == 0)
        {
            ForkFresh();
            std::_Exit(0);
        }
        Require(WaitForEnd(iFresh) == 0, "fresh process");
    }
}

void ForkFrom(std::string const & sPlace, int iForks)
{
    BusyThreads const oThreads(false);
    if (sPlace == "main")
        ForkFromHere(iForks);
    else if (sPlace == "callback")
        ForkFromCallBack(iForks);
    else
    {
        std::jthread const oFirst(&ForkFromHere, iForks / 2);
        std::jthread const oSecond(&ForkFromHere, iForks / 2);
    }
}

} // namespace

int main(int iCount, char ** pArguments)
{
    if (iCount < 3)
        return 2;

    // The program's own class; those of the library may be used for the first time at any moment.
    static_cast<void>(NumberMessage::GetStaticClassDesc());

    if (iCount > 3)
        g_iSeconds = static_cast<unsigned int>(std::atoi(pArguments[3]));
    int const iForks = std::atoi(pArguments[1]);
    std::string const sPlace = pArguments[2];
    if (sPlace == "fresh")
        ForkFreshProcesses(iForks);
    else
        ForkFrom(sPlace, iForks);
    std::puts("ok");
    return 0;
}
