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

/// Runs one step of the context that it was given last.
struct TSL_HIDDEN TaskContextThread::Private : public Thread
{
public:
    // Before the object is less than it was: a thread that has just been started still asks for its Process.
    ~Private() override
    {
        while (Kill(EXIT_CODE_AT_DESTRUCTION).GetErrorCode() == ERR::eTimeout)
        {
        }
    }

    /// False if a thread runs, which another caller may have started a moment ago.
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
            // The assertion tells the same to whoever called.
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
    /// Once for each step in which memory has run out.
    void ReportLackOfMemory()
    {
        if (m_bLackOfMemory.exchange(false, std::memory_order_relaxed))
            static_cast<void>(Support::DispatchMessage(
                MakeResult(ERR::eInternal, "Memory has run out in a step of the statemachine.")));
    }

    // Several threads may set it at once, always to the same.
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
