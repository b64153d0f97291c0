#include "platform/Threads.h"

#include "platform/windows/ThreadRecord.h"

#include <memory>

namespace tsl::Platform
{

constinit thread_local Thread * t_pThis = nullptr;

namespace
{

void GiveUp(Thread * pThread)
{
    if (pThread->iOwners.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete pThread;
}

DWORD WINAPI RunThread(void * pArgument)
{
    auto * const pThis = static_cast<Thread *>(pArgument);
    pThis->pState = &t_oForcedEnd;
    t_pThis = pThis;
    pThis->fMain(pThis->pArgument);
    t_pThis = nullptr;
    GiveUp(pThis);
    return 0;
}

} // namespace

int StartThread(void (*fMain)(void *), void * pArgument, Thread *& pThread)
{
    auto pNew = std::make_unique<Thread>();
    pNew->fMain = fMain;
    pNew->pArgument = pArgument;
    pNew->oAsked = Handle(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    if (!pNew->oAsked)
        return GetSystemError();

    // It begins when its record is complete.
    pNew->oThread = Handle(::CreateThread(nullptr, 0, &RunThread, pNew.get(), CREATE_SUSPENDED, &pNew->iId));
    if (!pNew->oThread)
        return GetSystemError();
    pThread = pNew.release();
    ::ResumeThread(pThread->oThread.Get());
    return 0;
}

unsigned long GetThreadId(Thread const & oThread)
{
    return oThread.iId;
}

bool IsThisThread(Thread const & oThread)
{
    return t_pThis == &oThread;
}

bool HasEnded(Thread & oThread)
{
    return ::WaitForSingleObject(oThread.oThread.Get(), 0) == WAIT_OBJECT_0;
}

void CloseThread(Thread * pThread)
{
    if (!IsThisThread(*pThread))
    {
        // A thread that was ended by force has not given up the record, and does not run any more.
        ::WaitForSingleObject(pThread->oThread.Get(), INFINITE);
        if (pThread->eState.load(std::memory_order_acquire) == Thread::eEnding)
        {
            delete pThread;
            return;
        }
    }
    GiveUp(pThread);
}

} // namespace tsl::Platform
