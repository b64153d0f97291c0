// Forks children, as many as the first argument says, while eight threads are busy with all that the library
// shares between threads, and prints "ok". Each child does everything itself, with the third argument's or ten
// seconds' time for it. The second argument says where the forks come from: "main", "threads" (two of them at
// once), "callback" (a processor of the bus), "fresh" (a process whose threads use everything for the first
// time) or "owner" (once, beside a thread that owns a lock).

#include "../OpenThread.h"
#include "../TestMessages.h"
#include "ProcessChecks.h"

#include <tessel/ScopedLock.h>

using namespace tsl;
using namespace tsltest;

namespace
{

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

/// Does everything in a forked child, and what the function adds.
template<class More>
pid_t Fork(More const & fDoMore)
{
    pid_t const iChild = ::fork();
    if (iChild != 0)
        return iChild;
    ::alarm(g_iSeconds);
    DoEverything();
    fDoMore();
    std::_Exit(0);
}

void UseThreadsInChild(Thread & oThreadOfParent)
{
    {
        Child oChild("out x\\n", WITH_READERS);
        Require(RunToTheEnd(oChild), "child");
        Require(oChild.TakeOutput() == "x\n", "child's line");
    }
    // The child does not have the parent's thread, and its object knows that.
    Require(!oThreadOfParent.IsRunning(), "thread of the parent");
    Require(oThreadOfParent.Run().IsOk(), "new thread");
    Require(oThreadOfParent.Kill(0).IsOk(), "kill");
}

void ForkOften(int iCount, bool bInCallBack)
{
    OpenThread oSleeper(&SleepForLong);
    Require(oSleeper.Run().IsOk(), "sleeper");
    auto const fFork = [&](Message const & oMessage, Result &)
    {
        auto const * const pNumber = dynamic_cast<NumberMessage const *>(&oMessage);
        if (pNumber && pNumber->iNumber == 1)
            Require(WaitForFork(Fork([&] { UseThreadsInChild(oSleeper); })) == 0, "forked child");
    };
    BusListener const oListener(Message::GetBaseType(), bInCallBack ? fFork : TestProcessor::Work());
    Result oIgnored;
    for (int i = 0; i < iCount; ++i)
    {
        LimitLog(i);
        bInCallBack ? void(Support::DispatchMessage(NumberMessage(1))) : fFork(NumberMessage(1), oIgnored);
    }
}

/// Forks by the function while other threads do everything, again and again until it is done, or once.
void ForkBesideBusyThreads(bool bOnce, std::function<void()> const & fFork)
{
    std::atomic<bool> bStop{bOnce};
    RunOnThreads(9,
        [&](int iThread)
        {
            if (iThread == 0)
            {
                fFork();
                bStop = true;
                return;
            }
            do
                DoEverything();
            while (!bStop);
        });
}

/// The lock's owner waits until the fork is over, so nobody gives the lock up in the child.
void ForkBesideOwnerOfLock()
{
    CriticalSectionMutex oLock;
    std::latch oLocked(1);
    std::latch oForked(1);
    std::jthread const oOwner(
        [&]
        {
            WriteLock const oScope(oLock);
            oLocked.count_down();
            oForked.wait();
        });
    oLocked.wait();
    pid_t const iChild = Fork([&] { WriteLock const oScope(oLock); });
    oForked.count_down();
    Require(WaitForFork(iChild) == 0, "lock of a lost owner");
}

/// In a process in which nothing has been used yet.
void ForkFresh()
{
    pid_t aChildren[4];
    for (pid_t & iChild : aChildren)
        iChild = Fork([] {});
    for (pid_t const iChild : aChildren)
        Require(WaitForFork(iChild) == 0, "child of a fresh process");
}

void ForkFreshProcesses(int iCount)
{
    for (int i = 0; i < iCount; ++i)
    {
        LimitLog(i);
        pid_t const iFresh = ::fork();
        if (iFresh == 0)
        {
            ::alarm(3 * g_iSeconds);
            ForkBesideBusyThreads(true, &ForkFresh);
            std::_Exit(0);
        }
        Require(WaitForEnd(iFresh) == 0, "fresh process");
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
    g_sOccupation = pArguments[2];
    if (sPlace == "owner")
        ForkBesideOwnerOfLock();
    else if (sPlace == "fresh")
        ForkFreshProcesses(iForks);
    else if (sPlace == "threads")
        ForkBesideBusyThreads(false, [&] { RunOnThreads(2, [&](int) { ForkOften(iForks / 2, false); }); });
    else
        ForkBesideBusyThreads(false, [&] { ForkOften(iForks, sPlace == "callback"); });
    std::puts("ok");
    return 0;
}
