#include "Platform.h"

#include "ForcedEnd.h"
#include "PlatformProcessor.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string_view>

#include <limits.h>
#include <link.h>
#include <pthread.h>
#include <sched.h>
#include <signal.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

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
constexpr long ASKING_INTERVAL_GROWTH = 100;
constexpr long ASKING_INTERVAL_MAX = 1'000'000;

// Nanoseconds between two looks whether a thread has ended, about what it takes to end one.
constexpr long LOOK_INTERVAL = 50'000;

/// Where the code and the data lie in which a thread must not be ended: those of the library, and of the
/// runtime libraries, whose locks and lists nobody could repair.
class RuntimeLibraries
{
public:
    /// Looks for them anew, since some are loaded late.
    void Find()
    {
        m_iCount = 0;
        ::dl_iterate_phdr(
            [](dl_phdr_info * pObject, std::size_t, void * pThis)
            {
                static_cast<RuntimeLibraries *>(pThis)->AddIfRuntime(*pObject);
                return 0;
            },
            this);
    }

    bool Contain(std::uintptr_t iAddress) const
    {
        return std::any_of(m_aRanges.begin(), m_aRanges.begin() + m_iCount,
            [iAddress](Range const & oRange) { return oRange.Contains(iAddress); });
    }

private:
    struct Range
    {
        std::uintptr_t iBegin = UINTPTR_MAX;
        std::uintptr_t iEnd = 0;

        bool Contains(std::uintptr_t iAddress) const { return iBegin <= iAddress && iAddress < iEnd; }
    };

    static Range GetRange(dl_phdr_info const & oObject)
    {
        Range oRange;
        for (int i = 0; i < oObject.dlpi_phnum; ++i)
        {
            ElfW(Phdr) const & oSegment = oObject.dlpi_phdr[i];
            if (oSegment.p_type != PT_LOAD)
                continue;
            std::uintptr_t const iBegin = oObject.dlpi_addr + oSegment.p_vaddr;
            oRange.iBegin = std::min(oRange.iBegin, iBegin);
            oRange.iEnd = std::max(oRange.iEnd, iBegin + oSegment.p_memsz);
        }
        return oRange;
    }

    static bool IsRuntimeName(std::string_view sPath)
    {
        std::string_view const sFile = sPath.substr(sPath.rfind('/') + 1);
        static constexpr std::string_view aNames[] = {"ld-", "ld.", "libasan.", "libatomic.", "libc++",
            "libc-", "libc.", "libclang_rt.", "libdl", "libgcc_s.", "libjemalloc", "liblsan.", "libmimalloc",
            "libpthread", "librt", "libstdc++", "libtcmalloc", "libtsan.", "libubsan.", "libunwind",
            "linux-vdso"};
        return std::any_of(std::begin(aNames), std::end(aNames),
            [sFile](std::string_view sName) { return sFile.starts_with(sName); });
    }

    void AddIfRuntime(dl_phdr_info const & oObject)
    {
        // The program itself has no name; what is linked into it counts as its own code.
        std::string_view const sPath = oObject.dlpi_name;
        Range const oRange = GetRange(oObject);
        bool const bOwn = oRange.Contains(reinterpret_cast<std::uintptr_t>(&IsRuntimeName));
        if (!sPath.empty() && (bOwn || IsRuntimeName(sPath)) && m_iCount < m_aRanges.size())
            m_aRanges[m_iCount++] = oRange;
    }

    // Far more than there are kinds of them. No memory is asked for, since a destructor may be at work.
    std::array<Range, 64> m_aRanges;
    std::size_t m_iCount = 0;
};

/// Sends a signal to one thread when a time is over. Unlike one that the asking thread sends, it comes in
/// time however busy the processors are, and none pile up.
class DelayedSignal
{
public:
    DelayedSignal() = default;
    ~DelayedSignal()
    {
        if (m_bTimer)
            ::timer_delete(m_hTimer);
    }
    DelayedSignal(DelayedSignal const &) = delete;
    DelayedSignal & operator=(DelayedSignal const &) = delete;

    /// Without effect if the system has no timer left.
    void Begin(int iSignal, unsigned long iThreadId)
    {
        sigevent oEvent = {};
        oEvent.sigev_notify = SIGEV_THREAD_ID;
        oEvent.sigev_signo = iSignal;
        oEvent._sigev_un._tid = static_cast<pid_t>(iThreadId);
        m_bTimer = ::timer_create(CLOCK_MONOTONIC, &oEvent, &m_hTimer) == 0;
    }

    /// Safe in a handler. False if there is no timer.
    bool Send(long iNanoseconds) const
    {
        itimerspec const oTime{{}, {0, iNanoseconds}};
        return m_bTimer && ::timer_settime(m_hTimer, 0, &oTime, nullptr) == 0;
    }

private:
    timer_t m_hTimer = {};
    bool m_bTimer = false;
};

} // namespace

struct Thread
{
    Thread(void (*fTheMain)(void *), void * pTheArgument) : fMain(fTheMain), pArgument(pTheArgument) {}

    void (*fMain)(void *);
    void * pArgument;
    pthread_t hThread = {};
    std::atomic<unsigned long> iId{0}; ///< 0 until the thread runs
    bool bEnded = false;

    // In a child that another thread has forked off, the thread does not exist.
    std::atomic<unsigned int> iForkCount{Presence::GetForkCount()};

    std::atomic<bool> bAsked{false};

    long iInterval = ASKING_INTERVAL;

    // They do not change any more once the thread is asked.
    RuntimeLibraries oRuntime;
    DelayedSignal oSignal;
};

namespace
{

/// The calling thread, if it was started here.
constinit thread_local Thread * t_pThis = nullptr;

bool HasWaited(Interruption const & oPlace, RuntimeLibraries const & oRuntime)
{
    // A wait that was given up has taken no wake-up with it. Those for the runtime's own locks are short,
    // and there may be others that the thread holds meanwhile.
    return oPlace.iResult == -EINTR && IsBehindSystemCall(oPlace.iInstruction)
           && !oRuntime.Contain(oPlace.iFirstArgument);
}

/// Whether the rest of the process can do without the calling thread from here on.
bool MayEnd(Interruption const & oPlace, RuntimeLibraries const & oRuntime)
{
    unsigned int const iHolds = t_oForcedEnd.iHolds.load(std::memory_order_relaxed);
    ForcedEndState::EWait const eWait = t_oForcedEnd.eWait.load(std::memory_order_relaxed);
    bool const bKnown = oPlace.iInstruction != 0;
    if (eWait == ForcedEndState::eForHold)
        return iHolds == 1 && bKnown && HasWaited(oPlace, oRuntime);
    if (iHolds > 0)
        return false;
    if (eWait == ForcedEndState::eForTime)
        return true;
    return bKnown && (!oRuntime.Contain(oPlace.iInstruction) || HasWaited(oPlace, oRuntime));
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

void EndIfAsked(int, siginfo_t *, void * pContext)
{
    Thread * const pThis = t_pThis;
    if (!pThis || !pThis->bAsked.load(std::memory_order_acquire))
        return;
    if (MayEnd(GetInterruption(pContext), pThis->oRuntime))
        EndThisThread();

    // What was interrupted may be about to look at its error.
    int const iError = errno;
    t_oForcedEnd.bWanted.store(true, std::memory_order_relaxed);
    pThis->oSignal.Send(pThis->iInterval);
    pThis->iInterval = std::min(pThis->iInterval + ASKING_INTERVAL_GROWTH, ASKING_INTERVAL_MAX);
    errno = iError;
}

/// The last of the real-time signals that nobody handles, or 0 if there is none. What waits is to be woken
/// by it, not to go on waiting: so it is seen that it waited.
int ReserveSignal()
{
    struct sigaction oAction = {};
    oAction.sa_sigaction = &EndIfAsked;
    oAction.sa_flags = SA_SIGINFO;
    ::sigfillset(&oAction.sa_mask);
    for (int iSignal = SIGRTMAX; iSignal >= SIGRTMIN; --iSignal)
    {
        struct sigaction oPresent = {};
        if (::sigaction(iSignal, nullptr, &oPresent) == 0 && !(oPresent.sa_flags & SA_SIGINFO)
            && oPresent.sa_handler == SIG_DFL && ::sigaction(iSignal, &oAction, nullptr) == 0)
            return iSignal;
    }
    return 0;
}

int GetSignal()
{
    static int const iSignal = ReserveSignal();
    return iSignal;
}

void * RunThread(void * pArgument)
{
    Thread & oThread = *static_cast<Thread *>(pArgument);
    oThread.iId.store(GetThreadId(), std::memory_order_relaxed);
    t_pThis = &oThread;

    // Whoever started the thread may have kept the signal away from itself.
    sigset_t oSignals;
    ::sigemptyset(&oSignals);
    ::sigaddset(&oSignals, GetSignal());
    ::pthread_sigmask(SIG_UNBLOCK, &oSignals, nullptr);

    oThread.fMain(oThread.pArgument);
    return nullptr;
}

} // namespace

int StartThread(void (*fMain)(void *), void * pArgument, Thread *& pThread)
{
    if (GetSignal() == 0)
        return EAGAIN;

    auto pNew = std::make_unique<Thread>(fMain, pArgument);
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
    if (!oThread.bAsked.load(std::memory_order_relaxed))
    {
        oThread.oRuntime.Find();
        oThread.oSignal.Begin(GetSignal(), GetThreadId(oThread));
        oThread.bAsked.store(true, std::memory_order_release);
    }
    if (!oThread.oSignal.Send(1))
        ::pthread_kill(oThread.hThread, GetSignal());
}

void PauseBetweenAsking()
{
    timespec const oPause{0, LOOK_INTERVAL};
    ::nanosleep(&oPause, nullptr);
}

void EndThisThreadIf(void const * pReturn)
{
    Interruption const oPlace{.iInstruction = reinterpret_cast<std::uintptr_t>(pReturn)};
    if (t_pThis && MayEnd(oPlace, t_pThis->oRuntime))
        EndThisThread();
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
