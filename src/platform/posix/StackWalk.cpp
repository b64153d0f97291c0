#include "platform/posix/StackWalk.h"

#include "platform/posix/Image.h"

#include <unwind.h>

namespace tsl::Platform
{

namespace
{

// Functions of the runtime libraries that only wait, also as the sanitizers wrap them. A thread that ends in
// one of them loses only what it waited for. Where time has 64 bits on a processor of 32 bit, some have names of their
// own. Read-write locks and barriers are missing: they count the
// waiting threads and would still count one that has ended.
constexpr ExportedName WAITS[] = {
    // for time
    "nanosleep", "clock_nanosleep", "sleep", "usleep", "thrd_sleep",
    "_ZNSt11this_thread11__sleep_forENSt6chrono8durationIlSt5ratioILl1ELl1EEEENS1_IlS2_ILl1ELl1000000000EEEE",
    "_ZNSt11this_thread11__sleep_forENSt6chrono8durationIxSt5ratioILx1ELx1EEEENS1_IxS2_ILx1ELx1000000000EEEE",
    "__nanosleep64", "__clock_nanosleep_time64", "__thrd_sleep64",
    // for input and output
    "read", "__read_chk", "pread", "pread64", "__pread_chk", "__pread64_chk", "readv", "write", "pwrite",
    "pwrite64", "writev", "recv", "__recv_chk", "recvfrom", "__recvfrom_chk", "recvmsg", "send", "sendto",
    "sendmsg", "accept", "accept4", "connect", "open", "open64", "openat", "openat64", "__open_2",
    "__open64_2", "poll", "__poll_chk", "ppoll", "__ppoll_chk", "select", "pselect", "epoll_wait",
    "epoll_pwait", "epoll_pwait2", "flock", "lockf", "lockf64", "fcntl", "fcntl64", "msgrcv", "msgsnd",
    "semop", "semtimedop", "mq_receive", "mq_timedreceive", "mq_send", "mq_timedsend", "__recvmsg64",
    "__sendmsg64", "__fcntl_time64", "__ppoll64", "__ppoll64_chk", "__select64", "__pselect64",
    "__semtimedop64", "__mq_timedreceive_time64", "__mq_timedsend_time64",
    // for signals and children
    "pause", "sigsuspend", "sigwait", "sigwaitinfo", "sigtimedwait", "wait", "wait3", "wait4", "waitpid",
    "waitid", "__sigtimedwait64", "__wait3_time64", "__wait4_time64",
    // for other threads
    "syscall", "pthread_mutex_lock", "pthread_mutex_timedlock", "pthread_mutex_clocklock",
    "pthread_cond_wait", "pthread_cond_timedwait", "pthread_cond_clockwait", "pthread_join",
    "pthread_timedjoin_np", "pthread_clockjoin_np", "sem_wait", "sem_timedwait", "sem_clockwait", "mtx_lock",
    "mtx_timedlock", "cnd_wait", "cnd_timedwait", "thrd_join", "__cxa_guard_acquire", "_ZNSt6thread4joinEv",
    "__pthread_mutex_timedlock64", "__pthread_mutex_clocklock64", "__pthread_cond_timedwait64",
    "__pthread_cond_clockwait64", "__pthread_timedjoin_np64", "__pthread_clockjoin_np64", "__sem_timedwait64",
    "__sem_clockwait64", "__mtx_timedlock64", "__cnd_timedwait64",
    "_ZNSt18condition_variable4waitERSt11unique_lockISt5mutexE",
    "_ZNSt28__atomic_futex_unsigned_base19_M_futex_wait_untilEPjjbNSt6chrono8durationIlSt5ratioILl1ELl1EEEE"
    "NS2_IlS3_ILl1ELl1000000000EEEE",
    "_ZNSt28__atomic_futex_unsigned_base26_M_futex_wait_until_steadyEPjjbNSt6chrono8durationIlSt5ratioILl1E"
    "Ll1EEEENS2_IlS3_ILl1ELl1000000000EEEE"};

// CriticalSectionMutex::Lock.
constexpr ExportedName LIBRARY_LOCK[] = {"_ZN3tsl20CriticalSectionMutex4LockEv"};

/// Whether the thread waits in a function of this library.
bool IsOwnWait(StackPlace const & oPlace)
{
    return oPlace.eWait == StackPlace::eForTime || oPlace.eWait == StackPlace::eForLock;
}

EndObstacle CheckInnermost(StackPlace const & oPlace)
{
    if (IsOwnWait(oPlace))
        return EndObstacle::eNone;
    switch (LoadedImage(oPlace.iInstruction).GetKind())
    {
    case LoadedImage::eTessel:
        return EndObstacle::eLibrary;
    case LoadedImage::eRuntime:
        return oPlace.eWait == StackPlace::eForSystem ? EndObstacle::eNone : EndObstacle::eRuntime;
    case LoadedImage::eMixed:
        return EndObstacle::eRuntime;
    case LoadedImage::eProgram:
        break;
    }
    return EndObstacle::eNone;
}

/// Walks the stack frames of the calling thread, from the innermost one outwards.
class StackWalk
{
public:
    explicit StackWalk(StackPlace const & oPlace) : m_oPlace(oPlace) {}

    EndObstacle Run()
    {
        ::_Unwind_Backtrace(
            [](_Unwind_Context * pFrame, void * pThis)
            {
                bool const bGoOn = static_cast<StackWalk *>(pThis)->Visit(*pFrame);
                return bGoOn ? _URC_NO_REASON : _URC_END_OF_STACK;
            },
            this);
        return m_eObstacle;
    }

private:
    enum EStage
    {
        eBefore, ///< frames of the walk itself, inside of the place
        eInner,  ///< from the place to the first frame of the program
        eOuter   ///< from there on
    };

    /// Returns false to stop the walk.
    bool Visit(_Unwind_Context & oFrame)
    {
        // For a call the next instruction may belong to another function, so the byte before it is looked up.
        int bInterrupted = 0;
        std::uintptr_t const iNext = ::_Unwind_GetIPInfo(&oFrame, &bInterrupted);
        if (m_eStage == eBefore && iNext != m_oPlace.iInstruction)
            return true;
        if (m_eStage == eBefore)
            m_eStage = eInner;

        std::uintptr_t const iAddress = bInterrupted ? iNext : iNext - 1;
        if (!m_oImage.Contains(iAddress))
            m_oImage = LoadedImage(iAddress);
        std::uintptr_t const iFunction = ::_Unwind_GetRegionStart(&oFrame);

        bool const bEntry = iFunction == m_oPlace.iEntry;
        EndObstacle const eObstacle =
            m_eStage == eInner ? VisitInner(iFunction, bEntry) : VisitOuter(iFunction);
        if (eObstacle != EndObstacle::eNone || bEntry)
        {
            m_eObstacle = eObstacle;
            return false;
        }
        return true;
    }

    EndObstacle VisitInner(std::uintptr_t iFunction, bool bEntry)
    {
        LoadedImage::EKind const eKind = m_oImage.GetKind();
        if (!bEntry && (eKind == LoadedImage::eRuntime || eKind == LoadedImage::eTessel))
        {
            m_oCalled = m_oImage;
            m_iCalled = iFunction;
            return EndObstacle::eNone;
        }
        m_eStage = eOuter;
        EndObstacle const eObstacle = CheckCalled();
        return eObstacle == EndObstacle::eNone ? VisitOuter(iFunction) : eObstacle;
    }

    /// Checks the function that the program has called, if the innermost frame is not the program's.
    EndObstacle CheckCalled() const
    {
        if (m_iCalled == 0)
            return IsOwnWait(m_oPlace) ? EndObstacle::eRuntime : EndObstacle::eNone;

        if (m_oCalled.GetKind() == LoadedImage::eRuntime)
            return m_oPlace.eWait == StackPlace::eForSystem && m_oCalled.Exports(m_iCalled, WAITS)
                       ? EndObstacle::eNone
                       : EndObstacle::eRuntime;

        // Only Lock itself: other functions of the library that wait may be initialising a static object.
        bool const bWaits =
            m_oPlace.eWait == StackPlace::eForTime
            || (m_oPlace.eWait == StackPlace::eForLock && m_oCalled.Exports(m_iCalled, LIBRARY_LOCK));
        return bWaits ? EndObstacle::eNone : EndObstacle::eLibrary;
    }

    /// Checks a frame between the program's innermost one and the entry. Frames of the library are no
    /// obstacle: while it calls the program it holds nothing but locks, and those have been checked.
    EndObstacle VisitOuter(std::uintptr_t iFunction) const
    {
        // eMixed: a runtime library that is linked into the program does not call this library's waits.
        switch (m_oImage.GetKind())
        {
        case LoadedImage::eRuntime:
            return EndObstacle::eRuntime;
        case LoadedImage::eMixed:
            return IsOwnWait(m_oPlace) ? EndObstacle::eNone : EndObstacle::eRuntime;
        case LoadedImage::eProgram:
            return m_oImage.IsAllocator(iFunction) ? EndObstacle::eRuntime : EndObstacle::eNone;
        case LoadedImage::eTessel:
            break;
        }
        return EndObstacle::eNone;
    }

    StackPlace const & m_oPlace;
    EStage m_eStage = eBefore;
    EndObstacle m_eObstacle = EndObstacle::eStack;
    LoadedImage m_oImage;

    // The function that the program's innermost frame has called.
    LoadedImage m_oCalled;
    std::uintptr_t m_iCalled = 0;
};

} // namespace

bool CanWalkInHandler()
{
    // The unwinder of GCC 12 finds its tables without a lock, but another unwinder may have been loaded
    // before it. The first walk initialises the unwinder, which must not happen in a handler.
    static bool const bCan = []
    {
        auto const iUnwinder = reinterpret_cast<std::uintptr_t>(&::_Unwind_Backtrace);
        static_cast<void>(FindObstacle({}));
        return LoadedImage(iUnwinder).GetFileName().starts_with("libgcc_s.");
    }();
    return bCan;
}

EndObstacle FindObstacle(StackPlace const & oPlace)
{
    // In a runtime library the stack is not walked: it may be the unwinder that was interrupted.
    EndObstacle const eObstacle = CheckInnermost(oPlace);
    return eObstacle == EndObstacle::eNone ? StackWalk(oPlace).Run() : eObstacle;
}

} // namespace tsl::Platform
