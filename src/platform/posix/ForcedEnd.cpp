#include "platform/ForcedEnd.h"

#include "platform/posix/Instructions.h"
#include "platform/posix/StackWalk.h"
#include "platform/posix/ThreadRecord.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>

#include <limits.h>
#include <pthread.h>
#include <signal.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

// A thread is killed by a signal, whose handler checks where the thread is. If the thread may end there, the
// handler ends it by the system call. Otherwise it sets a timer to check again.

namespace tsl
{

constinit thread_local ForcedEndState t_oForcedEnd;

} // namespace tsl

namespace tsl::Platform
{

namespace
{

// Nanoseconds until a thread is asked again. They are few, since a thread that mostly runs code of the
// runtime libraries is in the program's own code only for one moment out of hundreds. The interval grows each
// time, since a slow machine would spend all of a short one on the signal.
constexpr long ASKING_INTERVAL = 20'000;
constexpr long ASKING_INTERVAL_GROWTH = 20;
constexpr long ASKING_INTERVAL_MAX = 1'000'000;

// The interval is at least this many times as long as the walk of the stack, which may be deep.
constexpr long ASKING_INTERVAL_FACTOR = 4;

// Nanoseconds between two checks whether a thread has ended; about the time that its end takes.
constexpr long CHECK_INTERVAL = 50'000;

// After this many requests without an answer, the thread probably blocks the signal.
constexpr unsigned int REQUESTS_WITHOUT_ANSWER = 100;

std::int64_t GetNanoseconds()
{
    timespec oTime = {};
    ::clock_gettime(CLOCK_MONOTONIC, &oTime);
    return std::int64_t{oTime.tv_sec} * 1'000'000'000 + oTime.tv_nsec;
}

EndObstacle FindObstacleAt(std::uintptr_t iInstruction, StackPlace::EWait eWait)
{
    return FindObstacle({iInstruction, reinterpret_cast<std::uintptr_t>(t_pThis->fMain), eWait});
}

/// What the calling thread, which holds no lock of the library, was waiting for when it was interrupted.
StackPlace::EWait GetWait(void const * pContext, ForcedEndState::EWait eWait)
{
    if (eWait == ForcedEndState::eForTime)
        return StackPlace::eForTime;
    if (!IsInterruptedInWait(pContext))
        return StackPlace::eNone;
    return eWait == ForcedEndState::eForLock ? StackPlace::eForLock : StackPlace::eForSystem;
}

EndObstacle FindObstacleInHandler(void const * pContext)
{
    unsigned int const iLocks = t_oForcedEnd.iLocks.load(std::memory_order_relaxed);
    ForcedEndState::EWait const eWait = t_oForcedEnd.eWait.load(std::memory_order_relaxed);
    if (iLocks > (eWait == ForcedEndState::eForLock ? 1U : 0U))
        return EndObstacle::eLock;

    // If the stack cannot be walked, a thread can only be killed where the library waits for time.
    std::uintptr_t const iInstruction = GetInterruptedInstruction(pContext);
    if (iInstruction == 0 || !CanWalkInHandler())
        return eWait == ForcedEndState::eForTime ? EndObstacle::eNone : EndObstacle::eStack;

    StackPlace::EWait const eWaitHere = GetWait(pContext, eWait);
    if (eWait == ForcedEndState::eForLock && eWaitHere != StackPlace::eForLock)
        return EndObstacle::eLibrary;
    return FindObstacleAt(iInstruction, eWaitHere);
}

/// Ends the calling thread by the system call: the runtime library would unwind it or destroy its
/// thread-local objects. The kernel wakes a thread that joins it.
[[noreturn]] void EndThisThread()
{
    sigset_t oSignals;
    ::sigfillset(&oSignals);
    ::pthread_sigmask(SIG_BLOCK, &oSignals, nullptr);

    Presence::Abandon(t_oForcedEnd.pPresence);

    // Otherwise the runtime library would leave these values to the next thread that gets the same stack.
    for (pthread_key_t iKey = 0; iKey < PTHREAD_KEYS_MAX; ++iKey)
        ::pthread_setspecific(iKey, nullptr);
    for (;;)
        ::syscall(SYS_exit, 0);
}

/// Ends the calling thread if there is no obstacle and the request has not been withdrawn.
void EndUnless(EndObstacle eObstacle, Thread & oThis)
{
    Thread::EState eAsked = Thread::eAsked;
    if (eObstacle != EndObstacle::eNone)
        oThis.eObstacle.store(eObstacle, std::memory_order_relaxed);
    else if (oThis.eState.compare_exchange_strong(eAsked, Thread::eEnding, std::memory_order_relaxed))
        EndThisThread();
}

/// Sets the timer for the next request.
void AskAgain(Thread & oThis, std::int64_t iTimeTaken)
{
    long const iInterval = oThis.iInterval.load(std::memory_order_relaxed);
    oThis.iInterval.store(
        std::min(iInterval + ASKING_INTERVAL_GROWTH, ASKING_INTERVAL_MAX), std::memory_order_relaxed);
    oThis.oTimer.Send(static_cast<long>(
        std::clamp<std::int64_t>(iTimeTaken * ASKING_INTERVAL_FACTOR, iInterval, 999'999'999)));
}

/// Creates a timer for the chosen signal, if there is one.
void BeginTimer(Thread & oThread)
{
    oThread.oTimer.End();
    if (int const iSignal = oThread.oSignals.GetTimed())
        oThread.oTimer.Begin(iSignal, GetThreadId(oThread));
}

/// Begins to ask the thread to end, by the chosen signals.
void BeginToAsk(Thread & oThread)
{
    oThread.eObstacle.store(EndObstacle::eNoAnswer, std::memory_order_relaxed);
    oThread.iInterval.store(ASKING_INTERVAL, std::memory_order_relaxed);
    oThread.iRequests = 0;
    BeginTimer(oThread);
    oThread.eState.store(Thread::eAsked, std::memory_order_release);
}

/// Chooses other signals if the program has replaced our handler or the thread blocks the signals.
void KeepSignals(Thread & oThread)
{
    bool const bSilent = ++oThread.iRequests % REQUESTS_WITHOUT_ANSWER == 0
                         && oThread.eObstacle.load(std::memory_order_relaxed) == EndObstacle::eNoAnswer;
    if (!bSilent && oThread.oSignals.AreKept())
        return;

    int const iFormer = oThread.oSignals.GetTimed();
    oThread.oSignals.Choose(GetBlockedSignals(GetThreadId(oThread)));
    if (oThread.oSignals.GetTimed() != iFormer)
        BeginTimer(oThread);
}

} // namespace

void EndIfAsked(int, siginfo_t *, void * pContext)
{
    Thread * const pThis = t_pThis;
    if (!pThis || pThis->eState.load(std::memory_order_acquire) != Thread::eAsked)
        return;

    // The interrupted code may be about to read errno.
    int const iError = errno;
    std::int64_t const iBegin = GetNanoseconds();
    EndUnless(FindObstacleInHandler(pContext), *pThis);
    t_oForcedEnd.bWanted.store(true, std::memory_order_relaxed);
    AskAgain(*pThis, GetNanoseconds() - iBegin);
    errno = iError;
}

void AskToEnd(Thread & oThread)
{
    if (oThread.eState.load(std::memory_order_relaxed) == Thread::eFree)
        BeginToAsk(oThread);
    KeepSignals(oThread);
    if (!oThread.oTimer.Send(1) && oThread.oSignals.GetPlain() != 0)
        ::pthread_kill(oThread.hThread, oThread.oSignals.GetPlain());
}

void PauseBetweenAsking()
{
    // A thread that kills another one can be killed itself here: two threads may kill each other.
    WaitScope const oScope(ForcedEndState::eForTime);
    timespec const oPause{0, CHECK_INTERVAL};
    ::nanosleep(&oPause, nullptr);
}

bool StopAskingToEnd(Thread & oThread, EndObstacle & eObstacle)
{
    Thread::EState eAsked = Thread::eAsked;
    if (!oThread.eState.compare_exchange_strong(eAsked, Thread::eFree, std::memory_order_relaxed)
        && eAsked == Thread::eEnding)
        return false;

    oThread.oTimer.End();
    eObstacle = oThread.eObstacle.load(std::memory_order_relaxed);
    return true;
}

void EndThisThreadIf(void const * pReturn)
{
    Thread * const pThis = t_pThis;
    if (!pThis || pThis->eState.load(std::memory_order_acquire) != Thread::eAsked)
    {
        t_oForcedEnd.bWanted.store(false, std::memory_order_relaxed);
        return;
    }
    if (t_oForcedEnd.iLocks.load(std::memory_order_relaxed) == 0)
        EndUnless(FindObstacleAt(reinterpret_cast<std::uintptr_t>(pReturn), StackPlace::eNone), *pThis);
}

} // namespace tsl::Platform
