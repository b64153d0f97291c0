#include <tessel/Thread.h>

#include "platform/Clock.h"
#include "platform/Processes.h"
#include "platform/Threads.h"

#include <tessel/Assertion.h>
#include <tessel/Exception.h>
#include <tessel/Locks.h>
#include <tessel/LogPoint.h>
#include <tessel/OS.h>
#include <tessel/ScopedLock.h>
#include <tessel/String.h>
#include <tessel/Support.h>

#include <atomic>
#include <cstdint>
#include <new>
#include <utility>

namespace tsl
{

namespace
{

constexpr int EXIT_CODE_NONE = -1;
constexpr int EXIT_CODE_ENDED = 0;

// Milliseconds for which Kill tries: less than two seconds, so that it returns in time on a busy machine, too.
constexpr std::int64_t PATIENCE = 1900;

String ToText(unsigned long iThreadId)
{
    return String() << static_cast<unsigned int>(iThreadId);
}

/// Reports what has ended the thread. A failure of the report itself is ignored, since it could be reported to
/// nobody.
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

char const * GetText(Platform::EndObstacle eObstacle)
{
    switch (eObstacle)
    {
    case Platform::EndObstacle::eLock:
        return "It holds a lock of the library.";
    case Platform::EndObstacle::eLibrary:
        return "It is in a function of the library.";
    case Platform::EndObstacle::eRuntime:
        return "It is in a runtime library, or was called back by one.";
    case Platform::EndObstacle::eStack:
        return "It is in code whose caller is unknown.";
    default:
        return "It does not respond: it blocks all signals, or gets no time of a processor.";
    }
}

String GetName(unsigned long iThreadId, Platform::Thread * pHandle)
{
    return String("Thread ") + ToText(iThreadId) + ", handle=" + static_cast<void *>(pHandle);
}

} // namespace

struct TSL_HIDDEN Thread::Private
{
    static constexpr std::int64_t WITHOUT_LIMIT = -1;

    /// What Start has found and done. It is traced after the lock is released.
    struct StartTrace
    {
        Platform::Thread * pFormer = nullptr;
        unsigned long iFormerId = 0;
        bool bFormerRuns = false;
        Platform::Thread * pNew = nullptr;
        unsigned long iNewId = 0;

        void Write() const;
    };

    ~Private() { Close(); }

    static void Main(void * pArgument);

    /// Code 11 if the thread cannot be ended within iLimit milliseconds.
    Result Kill(std::int64_t iLimit);

    /// Does nothing on the thread itself, which then outlives the object.
    void KillWithoutLimit();

    // The caller of all functions below holds the lock, or is the destructor.

    bool IsRunning() const { return pThread && !Platform::HasEnded(*pThread); }

    void Close()
    {
        if (pThread)
            Platform::CloseThread(std::exchange(pThread, nullptr));
    }

    Result Start(Thread & oThread, StartTrace & oTrace);
    bool TryToKill(unsigned int iRunToKill);
    bool GiveUp(bool bNow, Platform::EndObstacle & eObstacle);

    CriticalSectionMutex oLock;
    std::atomic<unsigned long> iThreadId{0};
    Platform::Thread * pThread = nullptr;

    // Incremented with each thread, so that Kill does not end a later one.
    unsigned int iRun = 0;
};

void Thread::Private::Main(void * pArgument)
{
    // Process may delete the object, so nothing of it is used afterwards.
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

void Thread::Private::StartTrace::Write() const
{
    if (pFormer)
        Trace("Thread",
            [&] {
                return GetName(iFormerId, pFormer) + (bFormerRuns ? " is still active." : " has terminated.");
            });
    if (pNew)
        Trace("Thread",
            [&]
            {
                return String("New thread created. ThreadId=") + ToText(iNewId)
                       + ", handle=" + static_cast<void *>(pNew);
            });
}

Result Thread::Private::Start(Thread & oThread, StartTrace & oTrace)
{
    WriteLock const oScope(oLock);
    oTrace.pFormer = pThread;
    oTrace.iFormerId = iThreadId;
    oTrace.bFormerRuns = IsRunning();
    if (oTrace.bFormerRuns)
        return MakeResult(ERR::eNotAllowed, "Cannot start new thread. There is still one running.");

    Close();
    iThreadId = 0;
    if (int const iError = Platform::StartThread(&Main, &oThread, pThread))
        return MakeResult(ERR::eSubsystem, "Error while starting new thread.", OS::FormatError(iError));

    ++iRun;
    iThreadId = Platform::GetThreadId(*pThread);
    oTrace.pNew = pThread;
    oTrace.iNewId = iThreadId;
    return Result();
}

/// Returns true if the thread of that run has ended; asks it to end otherwise.
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

/// If bNow is set, stops asking the thread to end, and returns true unless it is ending already.
bool Thread::Private::GiveUp(bool bNow, Platform::EndObstacle & eObstacle)
{
    return bNow && Platform::StopAskingToEnd(*pThread, eObstacle);
}

Result Thread::Private::Kill(std::int64_t iLimit)
{
    unsigned long const iId = iThreadId;
    unsigned int iRunToKill = 0;
    bool bSelf = false;
    {
        WriteLock const oScope(oLock);
        if (!IsRunning())
            return Result();
        bSelf = Platform::IsThisThread(*pThread);
        iRunToKill = iRun;
    }
    if (bSelf)
    {
        Trace("Thread", [&] { return String("Cannot kill thread id ") + ToText(iId); });
        return MakeResult(ERR::eNotAllowed, "A thread cannot kill itself.");
    }

    // The lock is released between the tries: this thread may itself be killed, which must not happen while it
    // holds it.
    std::int64_t const iBegin = Platform::GetSteadyTime();
    for (;;)
    {
        std::int64_t const iTried = Platform::GetSteadyTime() - iBegin;
        Platform::EndObstacle eObstacle = Platform::EndObstacle::eNone;
        bool bGivenUp = false;
        {
            WriteLock const oScope(oLock);
            if (TryToKill(iRunToKill))
                break;
            bGivenUp = GiveUp(iLimit != WITHOUT_LIMIT && iTried >= iLimit, eObstacle);
        }
        if (bGivenUp)
        {
            Trace("Thread", [&] { return String("Cannot kill thread id ") + ToText(iId); });
            return MakeResult(ERR::eTimeout, String("Thread has not ended within ") + static_cast<int>(iTried)
                                                 + " ms. " + GetText(eObstacle));
        }
        Platform::PauseBetweenAsking();
    }
    Trace("Thread", [&] { return String("Thread with id ") + ToText(iId) + " successfully killed"; });
    return Result();
}

void Thread::Private::KillWithoutLimit()
{
    try
    {
        static_cast<void>(Kill(WITHOUT_LIMIT));
    }
    catch (std::bad_alloc const &)
    {
        // Only the text of a failure allocates.
    }
}

Thread::Thread() : m(std::make_shared<Private>()) {}
Thread::Thread(Thread const & oSource) = default;

Thread & Thread::operator=(Thread const & oSource)
{
    // If this is the last owner of its thread, the record must not be destroyed while the thread runs.
    if (m != oSource.m)
        m->KillWithoutLimit();
    m = oSource.m;
    return *this;
}

Thread::~Thread()
{
    m->KillWithoutLimit();
}

Result Thread::Run()
{
    Private::StartTrace oTrace;
    Result const oResult = m->Start(*this, oTrace);
    oTrace.Write();
    return oResult;
}

Result Thread::Kill(unsigned int)
{
    return m->Kill(PATIENCE);
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
