#include <tessel/Thread.h>

#include "Platform.h"

#include <tessel/Assertion.h>
#include <tessel/Exception.h>
#include <tessel/Locks.h>
#include <tessel/LogPoint.h>
#include <tessel/OS.h>
#include <tessel/ScopedLock.h>
#include <tessel/String.h>
#include <tessel/Support.h>

#include <atomic>
#include <new>
#include <utility>

namespace tsl
{

namespace
{

constexpr int EXIT_CODE_NONE = -1;
constexpr int EXIT_CODE_ENDED = 0;

String ToText(unsigned long iThreadId)
{
    return String() << static_cast<unsigned int>(iThreadId);
}

/// Nobody is left who could be told that the processors have failed, or that there is no memory for the report.
void Report(Result const & oCause)
{
    try
    {
        static_cast<void>(Support::DispatchMessage(MakeResult(ERR::eInternal,
            "Unhandeled exception in ThreadFunctionProcessor traped. Thread will terminate.", oCause)));
    }
    catch (std::bad_alloc const &)
    {
    }
}

} // namespace

struct TSL_HIDDEN Thread::Private
{
    ~Private() { Close(); }

    static void Main(void * pArgument);

    // All of the following under the lock, or in the end.

    bool IsRunning() const { return pThread && !Platform::HasEnded(*pThread); }

    void Close()
    {
        if (pThread)
            Platform::CloseThread(std::exchange(pThread, nullptr));
    }

    String GetName() const
    {
        return String("Thread ") + ToText(iThreadId) + ", handle=" + static_cast<void *>(pThread);
    }

    void DropEndedThread();
    Result Start(Thread & oThread);
    bool TryToKill(unsigned int iRunToKill);

    CriticalSectionMutex oLock;
    std::atomic<unsigned long> iThreadId{0};
    Platform::Thread * pThread = nullptr;

    // Tells one thread from the next.
    unsigned int iRun = 0;
};

void Thread::Private::Main(void * pArgument)
{
    // Nothing of the object is used after Process, which may have deleted it.
    unsigned long const iId = OS::GetThreadId();
    bool bFailed = false;
    try
    {
        Thread * const pThread = static_cast<Thread *>(pArgument);
        if (!pThread)
            XAssertionFailed("pThread != NULL", "Internal Error.");
        Trace("Thread", [&] { return String("ThreadFunction started. TheadId=") + ToText(iId); });
        pThread->Process();
    }
    catch (Exception & oException)
    {
        bFailed = true;
        Report(oException.GetResult());
    }

    if (bFailed)
        Trace("Thread", [&] { return String("ThreadFunction finished with ERROR. TheadId=") + ToText(iId); });
    else
        Trace(
            "Thread", [&] { return String("ThreadFunction finished successfull. TheadId=") + ToText(iId); });
}

void Thread::Private::DropEndedThread()
{
    if (!pThread)
        return;

    if (IsRunning())
    {
        Trace("Thread", [&] { return GetName() + " is still active."; });
        return;
    }
    Trace("Thread", [&] { return GetName() + " has terminated."; });
    Close();
}

Result Thread::Private::Start(Thread & oThread)
{
    iThreadId = 0;
    if (int const iError = Platform::StartThread(&Main, &oThread, pThread))
        return MakeResult(ERR::eSubsystem, "Error while starting new thread.", OS::FormatError(iError));

    ++iRun;
    iThreadId = Platform::GetThreadId(*pThread);
    Trace("Thread",
        [&]
        {
            return String("New thread created. ThreadId=") + ToText(iThreadId)
                   + ", handle=" + static_cast<void *>(pThread);
        });
    return Result();
}

/// Whether that thread has ended by now.
bool Thread::Private::TryToKill(unsigned int iRunToKill)
{
    if (!pThread || iRun != iRunToKill)
        return true;

    if (IsRunning())
    {
        Platform::AskToEnd(*pThread);
        return false;
    }
    Close();
    iThreadId = 0;
    return true;
}

Thread::Thread() : m(std::make_shared<Private>()) {}
Thread::Thread(Thread const & oSource) = default;

Thread & Thread::operator=(Thread const & oSource)
{
    // The last object that knows of a thread would otherwise wait for its end.
    if (m != oSource.m)
        static_cast<void>(Kill(EXIT_CODE_AT_DESTRUCTION));
    m = oSource.m;
    return *this;
}

Thread::~Thread()
{
    // Fails only on the thread itself, which then outlives the object.
    static_cast<void>(Kill(EXIT_CODE_AT_DESTRUCTION));
}

Result Thread::Run()
{
    WriteLock const oScope(m->oLock);
    m->DropEndedThread();
    if (m->pThread)
        return MakeResult(ERR::eNotAllowed, "Cannot start new thread. There is still one running.");
    return m->Start(*this);
}

Result Thread::Kill(unsigned int)
{
    unsigned long const iId = m->iThreadId;
    unsigned int iRun = 0;
    bool bSelf = false;
    {
        WriteLock const oScope(m->oLock);
        if (!m->IsRunning())
            return Result();
        bSelf = Platform::IsThisThread(*m->pThread);
        iRun = m->iRun;
    }
    if (bSelf)
    {
        Trace("Thread", [&] { return String("Cannot kill thread id ") + ToText(iId); });
        return MakeResult(ERR::eNotAllowed, "A thread cannot kill itself.");
    }

    // The lock is free between the tries, so that a thread that is killed while it kills leaves it alone.
    for (;;)
    {
        {
            WriteLock const oScope(m->oLock);
            if (m->TryToKill(iRun))
                break;
        }
        Platform::PauseBetweenAsking();
    }
    Trace("Thread", [&] { return String("Thread with id ") + ToText(iId) + " successfully killed"; });
    return Result();
}

bool Thread::IsRunning() const
{
    ReadLock const oScope(m->oLock);
    return m->IsRunning();
}

int Thread::GetExitCode() const
{
    ReadLock const oScope(m->oLock);
    if (!m->pThread)
        return EXIT_CODE_NONE;
    return m->IsRunning() ? Platform::EXIT_CODE_ACTIVE : EXIT_CODE_ENDED;
}

unsigned long Thread::GetThreadId() const
{
    return m->iThreadId;
}

void Thread::Process() {}

} // namespace tsl
