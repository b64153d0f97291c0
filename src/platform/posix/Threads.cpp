#include "platform/Threads.h"

#include "platform/ForcedEnd.h"
#include "platform/Identity.h"
#include "platform/posix/StackWalk.h"
#include "platform/posix/ThreadRecord.h"

#include <cerrno>
#include <memory>

#include <pthread.h>
#include <time.h>

namespace tsl::Platform
{

constinit thread_local Thread * t_pThis = nullptr;

namespace
{

void * RunThread(void * pArgument)
{
    Thread & oThread = *static_cast<Thread *>(pArgument);
    oThread.iId.store(GetThreadId(), std::memory_order_relaxed);
    t_pThis = &oThread;

    // The starting thread may block the signals, and a thread inherits that.
    oThread.oSignals.Unblock();

    oThread.fMain(oThread.pArgument);
    return nullptr;
}

} // namespace

int StartThread(void (*fMain)(void *), void * pArgument, Thread *& pThread)
{
    // The first call must not be in a signal handler.
    static_cast<void>(CanWalkInHandler());

    auto pNew = std::make_unique<Thread>(fMain, pArgument);
    pNew->oSignals.Choose(0);
    if (!pNew->oSignals.IsAnyChosen())
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

    // It does not run yet, but its id can be computed from the id of its clock. If it has no clock, it has
    // ended since, and has stored its id before.
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
        AllowForkScope const oScope;
        ::pthread_join(pThread->hThread, nullptr);
    }
}

} // namespace tsl::Platform
