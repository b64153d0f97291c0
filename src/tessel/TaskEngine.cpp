#include "TaskEngine.h"

#include "AssertionCause.h"

#include <tessel/LogPoint.h>
#include <tessel/TaskFactory.h>
#include <tessel/TaskTransition.h>

namespace tsl
{

namespace
{

// The failures are out of line, to keep their callers small (R05).

/// Names the machine whose table or task is wrong.
Result MakeCause(char const * sFault, TaskProcessor const & oMachine)
{
    return MakeResult(ERR::eInternal,
        String(sFault) + " Machine '" + oMachine.GetTaskName() + "' (Id=" + oMachine.GetTaskID() + ").");
}

[[noreturn, gnu::cold, gnu::noinline]] void FailFirstTask(TaskProcessor const & oMachine)
{
    XAssertionFailedBy("GetTaskTransitionList().GetNextTaskId(Task::TASK_INIT,Task::TR_PROCEED,iNextTaskId)",
        String("TaskId for destination of ") + Task::TASK_INIT + " with transition " + Task::TR_PROCEED
            + " not found.",
        MakeCause("The table has no first task.", oMachine));
}

[[noreturn, gnu::cold, gnu::noinline]] void FailTransition(
    TaskProcessor const & oMachine, Task const & oTask, int iTaskResult)
{
    XAssertionFailedBy("GetTaskTransitionList().GetNextTaskId(iCurrentTaskId,iTaskResult,iNextTaskId)",
        String("Undefined transition from task") + oTask.GetTaskName() + " (Id=" + oTask.GetTaskID()
            + ") and transition " + iTaskResult + ".",
        MakeCause("The table has no row for this result.", oMachine));
}

[[noreturn, gnu::cold, gnu::noinline]] void FailTask(TaskProcessor const & oMachine, int iTaskId)
{
    bool const bRegistered = TaskFactory::Instance().IsRegistered(iTaskId);
    XAssertionFailedBy("pTask != NULL", String("Task-Objekt ") + iTaskId + " could not be found or created.",
        MakeCause(bRegistered ? "Its function has made no new task." : "No task is registered under this id.",
            oMachine));
}

} // namespace

/// Sets the context of a task until the end of the scope.
class TaskEngine::StepScope
{
public:
    StepScope(Task & oTask, TaskContext & oContext) : m_oTask(oTask)
    {
        if (!Enter(oTask.m->pContext, oContext))
            FailInStep();
    }
    ~StepScope() { m_oTask.m->pContext.store(nullptr, std::memory_order_release); }
    StepScope(StepScope const &) = delete;
    StepScope & operator=(StepScope const &) = delete;

private:
    /// Two threads can meet only in the topmost machine, since its step runs all tasks below it. So only there the
    /// test and the change are one atomic operation (R05).
    bool Enter(std::atomic<TaskContext *> & pCurrent, TaskContext & oContext)
    {
        if (!m_oTask.m->pParent)
        {
            TaskContext * pNone = nullptr;
            return pCurrent.compare_exchange_strong(pNone, &oContext, std::memory_order_acquire);
        }
        if (pCurrent.load(std::memory_order_relaxed))
            return false;
        pCurrent.store(&oContext, std::memory_order_relaxed);
        return true;
    }

    Task & m_oTask;
};

void TaskEngine::FailInStep()
{
    XAssertionFailed("p==NULL", "Context wird für die Task zum zweiten Mal Instanziiert. "
                                "Entweder durch 2. Thread oder durch Rekursion!");
}

void TaskEngine::FailWithoutContext()
{
    XAssertionFailed("m->pContext!=NULL", "");
}

inline int TaskEngine::RunEntry(Task & oTask)
{
    Trace("Task", [&] { return String("Task '") + oTask.m->sName + "' starts DoTaskEntry "; });
    return oTask.DoTaskEntry();
}

inline int TaskEngine::RunProcess(Task & oTask)
{
    Trace("Task", [&] { return String("Task '") + oTask.m->sName + "' starts DoProcess "; });
    return oTask.DoProcess();
}

int TaskEngine::Process(Task & oTask, TaskContext & oContext)
{
    StepScope const oScope(oTask, oContext);
    return RunProcess(oTask);
}

int TaskEngine::Enter(Task & oTask, TaskContext & oContext)
{
    StepScope const oScope(oTask, oContext);
    return RunEntry(oTask);
}

void TaskEngine::Exit(Task & oTask, TaskContext & oContext)
{
    StepScope const oScope(oTask, oContext);
    Trace("Task", [&] { return String("Task '") + oTask.m->sName + "' starts DoTaskExit "; });
    oTask.DoTaskExit();
}

int TaskEngine::Begin(Task & oTask, TaskContext & oContext)
{
    StepScope const oScope(oTask, oContext);
    int const iResult = RunEntry(oTask);
    return iResult == Task::TR_REMAIN ? RunProcess(oTask) : iResult;
}

int TaskEngine::InitTask(TaskProcessor & oMachine, TaskContext & oContext)
{
    int iNextTaskId = 0;
    if (!oMachine.GetTaskTransitionList().GetNextTaskId(Task::TASK_INIT, Task::TR_PROCEED, iNextTaskId))
        FailFirstTask(oMachine);

    SetNewTask(oMachine, iNextTaskId);
    return Begin(*GetCurrentTask(oMachine), oContext);
}

int TaskEngine::SwitchTask(TaskProcessor & oMachine, int iTaskResult, TaskContext & oContext)
{
    Task & oCurrentTask = *GetCurrentTask(oMachine);
    int const iCurrentTaskId = oCurrentTask.GetTaskID();
    int iNextTaskId = 0;
    if (!oMachine.GetTaskTransitionList().GetNextTaskId(iCurrentTaskId, iTaskResult, iNextTaskId))
        FailTransition(oMachine, oCurrentTask, iTaskResult);

    // A row that leads back to the current task: the same object goes on, without exit and entry.
    if (iNextTaskId == iCurrentTaskId)
        return Process(oCurrentTask, oContext);

    Exit(oCurrentTask, oContext);
    SetNewTask(oMachine, iNextTaskId);
    return Begin(*GetCurrentTask(oMachine), oContext);
}

void TaskEngine::SetNewTask(TaskProcessor & oMachine, int iTaskId)
{
    std::unique_ptr<Task> pTask(TaskFactory::Instance().CreateProduct(iTaskId, TaskCreator(&oMachine)));

    // If the function has returned the current task again, the machine still owns it.
    if (pTask == GetCurrentTask(oMachine))
        static_cast<void>(pTask.release());
    if (!pTask)
        FailTask(oMachine, iTaskId);

    oMachine.OnTaskSwitch(GetCurrentTask(oMachine).get(), *pTask);

    // Deletes the old task after the new one has become the current one.
    GetCurrentTask(oMachine) = std::move(pTask);
}

} // namespace tsl
