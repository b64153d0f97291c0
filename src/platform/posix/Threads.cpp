#include "platform/Platform.h"

#include "platform/ForcedEnd.h"
#include "platform/Processor.h"
#include "platform/posix/StackWalk.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include <fcntl.h>
#include <limits.h>
#include <pthread.h>
#include <sched.h>
#include <signal.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

// A thread is ended by a signal, whose handler looks where the thread stands. If it may end there, it does
// so at once and for itself, by the system call. Else the handler sets a timer to look again.

namespace tsl
{

constinit thread_local ForcedEndState t_oForcedEnd;

} // namespace tsl

namespace tsl::Platform
{

namespace
{

// Nanoseconds for which a thread runs on before it is asked to end once more. One that works in the runtime
// libraries without a break is in the program's own code for one moment out of hundreds. The interval grows
// each time, since a slow machine spends all of a short one on the signal.
constexpr long ASKING_INTERVAL = 20'000;
constexpr long ASKING_INTERVAL_GROWTH = 20;
constexpr long ASKING_INTERVAL_MAX = 1'000'000;

// How much longer the thread runs on than it took to look at its stack, which may be deep.
constexpr long ASKING_INTERVAL_FACTOR = 4;

// Nanoseconds between two looks whether a thread has ended, about what it takes to end one.
constexpr long LOOK_INTERVAL = 50'000;

// Looks without an answer after which the thread may be thought to block the signal.
constexpr unsigned int LOOKS_WITHOUT_ANSWER = 100;

/// A set of signals, the first one in the lowest bit.
using SignalBits = std::uint64_t;

bool Contains(SignalBits iSignals, int iSignal)
{
    return (iSignals >> (iSignal - 1) & 1) != 0;
}

long GetNanoseconds()
{
    timespec oTime = {};
    ::clock_gettime(CLOCK_MONOTONIC, &oTime);
    return oTime.tv_sec * 1'000'000'000 + oTime.tv_nsec;
}

/// A timer that sends a signal to one thread. Unlike a signal that the asking thread sends, it comes in time
/// however busy the processors are, and none pile up.
class DelayedSignal
{
public:
    DelayedSignal() = default;
    ~DelayedSignal() { End(); }
    DelayedSignal(DelayedSignal const &) = delete;
    DelayedSignal & operator=(DelayedSignal const &) = delete;

    /// Without effect if the system has no timer left.
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

    /// Safe in a handler. False if there is no timer.
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

} // namespace

struct Thread
{
    enum EState : int
    {
        eFree, ///< nobody wants it to end
        eAsked,
        eEnding
    };

    Thread(void (*fTheMain)(void *), void * pTheArgument) : fMain(fTheMain), pArgument(pTheArgument) {}

    void (*fMain)(void *);
    void * pArgument;
    pthread_t hThread = {};
    std::atomic<unsigned long> iId{0}; ///< 0 until the thread runs
    bool bEnded = false;

    // In a child that another thread has forked off, the thread does not exist.
    std::atomic<unsigned int> iForkCount{Presence::GetForkCount()};

    std::atomic<EState> eState{eFree};
    std::atomic<EndObstacle> eObstacle{EndObstacle::eNoAnswer};
    std::atomic<long> iInterval{ASKING_INTERVAL};
    unsigned int iLooks = 0;

    /// Sent by the timer; 0 if there is none.
    int iTimedSignal = 0;

    /// Sent where no timer can be had. It is not a real-time signal, of which the system keeps a limited
    /// number, possibly none.
    int iPlainSignal = 0;

    DelayedSignal oTimer;
};

namespace
{

/// The calling thread, if it was started here.
constinit thread_local Thread * t_pThis = nullptr;

EndObstacle FindObstacleAt(std::uintptr_t iInstruction, StackPlace::EWait eWait)
{
    return FindObstacle({iInstruction, reinterpret_cast<std::uintptr_t>(t_pThis->fMain), eWait});
}

/// For what the calling thread waits where it was interrupted, if it holds nothing of the library.
StackPlace::EWait GetWait(void const * pContext, ForcedEndState::EWait eWait)
{
    if (eWait == ForcedEndState::eForTime)
        return StackPlace::eForTime;
    if (!IsInterruptedInWait(pContext))
        return StackPlace::eNone;
    return eWait == ForcedEndState::eForHold ? StackPlace::eForLock : StackPlace::eForSystem;
}

EndObstacle FindObstacleInHandler(void const * pContext)
{
    unsigned int const iHolds = t_oForcedEnd.iHolds.load(std::memory_order_relaxed);
    ForcedEndState::EWait const eWait = t_oForcedEnd.eWait.load(std::memory_order_relaxed);
    if (iHolds > (eWait == ForcedEndState::eForHold ? 1U : 0U))
        return EndObstacle::eLock;

    // Without its stack a thread can only be ended where the library waits for time.
    std::uintptr_t const iInstruction = GetInterruptedInstruction(pContext);
    if (iInstruction == 0 || !CanWalkInHandler())
        return eWait == ForcedEndState::eForTime ? EndObstacle::eNone : EndObstacle::eStack;

    StackPlace::EWait const eWaitHere = GetWait(pContext, eWait);
    if (eWait == ForcedEndState::eForHold && eWaitHere != StackPlace::eForLock)
        return EndObstacle::eLibrary;
    return FindObstacleAt(iInstruction, eWaitHere);
}

/// Ends the calling thread alone, without the runtime library, which would unwind it or destroy its
/// objects. Whoever joins the thread is told by the kernel.
[[noreturn]] void EndThisThread()
{
    sigset_t oSignals;
    ::sigfillset(&oSignals);
    ::pthread_sigmask(SIG_BLOCK, &oSignals, nullptr);

    Presence::Abandon(t_oForcedEnd.pPresence);

    // The runtime library leaves these values to the next thread on the same stack.
    for (pthread_key_t iKey = 0; iKey < PTHREAD_KEYS_MAX; ++iKey)
        ::pthread_setspecific(iKey, nullptr);
    for (;;)
        ::syscall(SYS_exit, 0);
}

/// Ends the calling thread if nothing keeps it and it is still to end.
void EndUnless(EndObstacle eObstacle, Thread & oThis)
{
    Thread::EState eAsked = Thread::eAsked;
    if (eObstacle != EndObstacle::eNone)
        oThis.eObstacle.store(eObstacle, std::memory_order_relaxed);
    else if (oThis.eState.compare_exchange_strong(eAsked, Thread::eEnding, std::memory_order_relaxed))
        EndThisThread();
}

/// Lets the thread be asked again soon.
void AskAgain(Thread & oThis, long iTimeTaken)
{
    long const iInterval = oThis.iInterval.load(std::memory_order_relaxed);
    oThis.iInterval.store(
        std::min(iInterval + ASKING_INTERVAL_GROWTH, ASKING_INTERVAL_MAX), std::memory_order_relaxed);
    oThis.oTimer.Send(std::clamp(iTimeTaken * ASKING_INTERVAL_FACTOR, iInterval, 999'999'999L));
}

void EndIfAsked(int, siginfo_t *, void * pContext)
{
    Thread * const pThis = t_pThis;
    if (!pThis || pThis->eState.load(std::memory_order_acquire) != Thread::eAsked)
        return;

    // What was interrupted may be about to look at its error.
    int const iError = errno;
    long const iBegin = GetNanoseconds();
    EndUnless(FindObstacleInHandler(pContext), *pThis);
    t_oForcedEnd.bWanted.store(true, std::memory_order_relaxed);
    AskAgain(*pThis, GetNanoseconds() - iBegin);
    errno = iError;
}

/// Whether the handler of the signal is the one above.
bool IsOurs(int iSignal)
{
    struct sigaction oPresent = {};
    return iSignal != 0 && ::sigaction(iSignal, nullptr, &oPresent) == 0 && (oPresent.sa_flags & SA_SIGINFO)
           && oPresent.sa_sigaction == &EndIfAsked;
}

/// Handles a signal that nobody handles. Calls of the system that it interrupts go on, where the system can:
/// the thread may not end there.
bool Take(int iSignal)
{
    if (IsOurs(iSignal))
        return true;

    struct sigaction oPresent = {};
    if (::sigaction(iSignal, nullptr, &oPresent) != 0 || (oPresent.sa_flags & SA_SIGINFO)
        || oPresent.sa_handler != SIG_DFL)
        return false;

    struct sigaction oAction = {};
    oAction.sa_sigaction = &EndIfAsked;
    oAction.sa_flags = SA_SIGINFO | SA_RESTART;
    ::sigfillset(&oAction.sa_mask);
    return ::sigaction(iSignal, &oAction, nullptr) == 0;
}

/// Chooses the signals for a thread that blocks the given ones.
void ChooseSignals(Thread & oThread, SignalBits iBlocked)
{
    oThread.iTimedSignal = 0;
    for (int iSignal = SIGRTMAX; iSignal >= SIGRTMIN && oThread.iTimedSignal == 0; --iSignal)
        if (!Contains(iBlocked, iSignal) && Take(iSignal))
            oThread.iTimedSignal = iSignal;

    // Nothing happens by default at the first of them, and hardly anybody uses the others.
    oThread.iPlainSignal = 0;
    for (int const iSignal : {SIGURG, SIGPWR, SIGIO, SIGVTALRM})
        if (oThread.iPlainSignal == 0 && !Contains(iBlocked, iSignal) && Take(iSignal))
            oThread.iPlainSignal = iSignal;
}

/// The signals that a thread blocks, as the system tells; none if it does not.
SignalBits GetBlockedSignals(unsigned long iThreadId)
{
    char aText[4096];
    std::snprintf(aText, sizeof aText, "/proc/self/task/%lu/status", iThreadId);
    int const iFile = ::open(aText, O_RDONLY | O_CLOEXEC);
    if (iFile < 0)
        return 0;
    ssize_t const iLength = ::read(iFile, aText, sizeof aText - 1);
    ::close(iFile);
    aText[std::max<ssize_t>(iLength, 0)] = '\0';
    char const sName[] = "\nSigBlk:";
    char const * const sLine = std::strstr(aText, sName);
    return sLine ? std::strtoull(sLine + sizeof sName - 1, nullptr, 16) : 0;
}

void * RunThread(void * pArgument)
{
    Thread & oThread = *static_cast<Thread *>(pArgument);
    oThread.iId.store(GetThreadId(), std::memory_order_relaxed);
    t_pThis = &oThread;

    // Whoever started the thread may have kept the signals away from itself.
    sigset_t oSignals;
    ::sigemptyset(&oSignals);
    for (int const iSignal : {oThread.iTimedSignal, oThread.iPlainSignal})
        if (iSignal != 0)
            ::sigaddset(&oSignals, iSignal);
    ::pthread_sigmask(SIG_UNBLOCK, &oSignals, nullptr);

    oThread.fMain(oThread.pArgument);
    return nullptr;
}

/// Begins to ask the thread by the signals that have been chosen.
void BeginToAsk(Thread & oThread)
{
    oThread.eObstacle.store(EndObstacle::eNoAnswer, std::memory_order_relaxed);
    oThread.iInterval.store(ASKING_INTERVAL, std::memory_order_relaxed);
    oThread.iLooks = 0;
    if (oThread.iTimedSignal != 0)
        oThread.oTimer.Begin(oThread.iTimedSignal, GetThreadId(oThread));
    oThread.eState.store(Thread::eAsked, std::memory_order_release);
}

/// Chooses other signals if the program has taken ours or the thread blocks them.
void KeepSignals(Thread & oThread)
{
    bool const bDeaf = ++oThread.iLooks % LOOKS_WITHOUT_ANSWER == 0
                       && oThread.eObstacle.load(std::memory_order_relaxed) == EndObstacle::eNoAnswer;
    auto const IsKept = [](int iSignal) { return iSignal == 0 || IsOurs(iSignal); };
    if (!bDeaf && IsKept(oThread.iPlainSignal) && IsKept(oThread.iTimedSignal))
        return;

    int const iFormer = oThread.iTimedSignal;
    ChooseSignals(oThread, GetBlockedSignals(GetThreadId(oThread)));
    if (oThread.iTimedSignal == iFormer)
        return;
    oThread.oTimer.End();
    if (oThread.iTimedSignal != 0)
        oThread.oTimer.Begin(oThread.iTimedSignal, GetThreadId(oThread));
}

} // namespace

int StartThread(void (*fMain)(void *), void * pArgument, Thread *& pThread)
{
    // Not for the first time in a handler.
    static_cast<void>(CanWalkInHandler());

    auto pNew = std::make_unique<Thread>(fMain, pArgument);
    ChooseSignals(*pNew, 0);
    if (pNew->iTimedSignal == 0 && pNew->iPlainSignal == 0)
        return EAGAIN;
    if (int const iError = ::pthread_create(&pNew->hThread, nullptr, &RunThread, pNew.get()))
        return iError;
    pThread = pNew.release();
    return 0;
}

unsigned long GetThreadId(Thread const & oThread)
{
    if (unsigned long const iId = oThread.iId.load(std::memory_order_relaxed))
        return iId;

    // It does not run yet, but the kernel has given it an id, of which that of its clock is made. Without
    // a clock it has ended meanwhile, and told its id before.
    clockid_t iClock = 0;
    if (::pthread_getcpuclockid(oThread.hThread, &iClock) == 0)
        return static_cast<unsigned long>(~(iClock >> 3));
    return oThread.iId.load(std::memory_order_relaxed);
}

bool IsThisThread(Thread const & oThread)
{
    return t_pThis == &oThread;
}

void KeepThisThreadInChild()
{
    if (t_pThis)
        t_pThis->iForkCount.store(Presence::GetForkCount(), std::memory_order_relaxed);
}

bool HasEnded(Thread & oThread)
{
    oThread.bEnded = oThread.bEnded
                     || oThread.iForkCount.load(std::memory_order_relaxed) != Presence::GetForkCount()
                     || ::pthread_tryjoin_np(oThread.hThread, nullptr) == 0;
    return oThread.bEnded;
}

void AskToEnd(Thread & oThread)
{
    if (oThread.eState.load(std::memory_order_relaxed) == Thread::eFree)
        BeginToAsk(oThread);
    KeepSignals(oThread);
    if (!oThread.oTimer.Send(1) && oThread.iPlainSignal != 0)
        ::pthread_kill(oThread.hThread, oThread.iPlainSignal);
}

void PauseBetweenAsking()
{
    // Two threads may kill each other.
    WaitScope const oScope(ForcedEndState::eForTime);
    timespec const oPause{0, LOOK_INTERVAL};
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
    if (t_oForcedEnd.iHolds.load(std::memory_order_relaxed) == 0)
        EndUnless(FindObstacleAt(reinterpret_cast<std::uintptr_t>(pReturn), StackPlace::eNone), *pThis);
}

void CloseThread(Thread * pThread)
{
    std::unique_ptr<Thread> const pOwner(pThread);
    if (IsThisThread(*pThread))
    {
        t_pThis = nullptr;
        ::pthread_detach(pThread->hThread);
    }
    else if (!HasEnded(*pThread))
    {
        OutsideScope const oScope;
        ::pthread_join(pThread->hThread, nullptr);
    }
}

} // namespace tsl::Platform
