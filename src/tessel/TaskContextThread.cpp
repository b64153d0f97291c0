#include <tessel/TaskContextThread.h>

#include "platform/Clock.h"

#include <tessel/Assertion.h>
#include <tessel/LogPoint.h>
#include <tessel/Support.h>
#include <tessel/Thread.h>

#include <atomic>
#include <new>

namespace tsl
{

/// The thread that runs a step of the context that TryToStep has set.
struct TSL_HIDDEN TaskContextThread::Private : public Thread
{
public:
    // Kill here, not in the base: a thread that has just been started still has to call this class's Process.
    ~Private() override
    {
        while (Kill(EXIT_CODE_AT_DESTRUCTION).GetErrorCode() == ERR::eTimeout)
        {
        }
    }

    /// Returns false if a thread runs already, which another caller may have just started.
    bool TryToStep(TaskContextThread & oTaskContext)
    {
        if (IsRunning())
            return false;

        ReportLackOfMemory();
        m_pTaskContext = &oTaskContext;
        Result const oResult = Run();
        if (oResult.GetErrorCode() == ERR::eNotAllowed)
            return false;
        if (oResult.IsError())
        {
            // The caller gets the same failure by the assertion.
            static_cast<void>(Support::DispatchMessage(MakeResult(
                ERR::eInternal, "Cannot start a thread that processes the statemachine.", oResult)));
            XAssertionFailed("false", "Cannot recover from previous error.");
        }
        return true;
    }

protected:
    void Process() override
    {
        TaskContextThread * const pTaskContext = m_pTaskContext;
        if (!pTaskContext)
            XAssertionFailed("m_pTaskContext", "No context set!");
        try
        {
            pTaskContext->TaskContext::Process();
        }
        catch (std::bad_alloc const &)
        {
            m_bLackOfMemory = true;
        }
    }

private:
    /// Reports each step that ran out of memory once.
    void ReportLackOfMemory()
    {
        if (m_bLackOfMemory.exchange(false, std::memory_order_relaxed))
            static_cast<void>(Support::DispatchMessage(
                MakeResult(ERR::eInternal, "Memory has run out in a step of the statemachine.")));
    }

    // Atomic, since several threads may set it at once, always to the same value.
    std::atomic<TaskContextThread *> m_pTaskContext{nullptr};
    std::atomic<bool> m_bLackOfMemory{false};
};

TaskContextThread::TaskContextThread(TaskProcessor * pProcessor)
    : TaskContext(pProcessor), m(std::make_unique<Private>())
{
}

TaskContextThread::~TaskContextThread() = default;

void TaskContextThread::Process()
{
    Trace("TaskContextThread", [] { return String("Start creating process thread ..."); });
    if (!m->TryToStep(*this))
        Trace("TaskContextThread", [] { return String("Thread is still running!"); });
    Trace("TaskContextThread", [] { return String("Creating process thread finished."); });
}

void TaskContextThread::ProcessBase()
{
    TaskContext::Process();
}

void TaskContextThread::Wait(int iDuration, bool bAlertable)
{
    if (bAlertable)
        Platform::SleepAlertably(iDuration);
    else
        Platform::Sleep(iDuration);
}

} // namespace tsl
