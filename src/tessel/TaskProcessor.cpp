#include <tessel/TaskProcessor.h>

#include <tessel/Assertion.h>
#include <tessel/TaskFactory.h>
#include <tessel/TaskTransition.h>

namespace tsl
{

namespace
{

// The failures of the engine, apart from it: each builds a text, which the engine has no time for.

[[noreturn, gnu::cold, gnu::noinline]] void FailFirstTask()
{
    XAssertionFailed("GetTaskTransitionList().GetNextTaskId(Task::TASK_INIT,Task::TR_PROCEED,iNextTaskId)",
        String("TaskId for destination of ") + Task::TASK_INIT + " with transition " + Task::TR_PROCEED
            + " not found.");
}

[[noreturn, gnu::cold, gnu::noinline]] void FailTransition(Task const & oTask, int iTaskResult)
{
    XAssertionFailed("GetTaskTransitionList().GetNextTaskId(iCurrentTaskId,iTaskResult,iNextTaskId)",
        String("Undefined transition from task") + oTask.GetTaskName() + " (Id=" + oTask.GetTaskID()
            + ") and transition " + iTaskResult + ".");
}

[[noreturn, gnu::cold, gnu::noinline]] void FailTask(int iTaskId)
{
    XAssertionFailed("pTask != NULL", String("Task-Objekt ") + iTaskId + " could not be found or created.");
}

} // namespace

TaskProcessor::TaskProcessor(String const & sName, TaskProcessor * pParent) : Task(sName, pParent) {}

TaskProcessor::TaskProcessor(TaskProcessor const & oSource) = default;
TaskProcessor & TaskProcessor::operator=(TaskProcessor const & oSource) = default;

TaskProcessor::~TaskProcessor()
{
    // The last of the copies, while it still is a machine to the task.
    if (IsLastOwner())
        m->pCurrentTask.reset();
}

MessageFilter const & TaskProcessor::GetDefinedInputFilter() const
{
    XAssertionFailed("false", "Unexpected");
}

int TaskProcessor::DoProcess()
{
    TaskContext & oContext = GetContext();

    // What an entry answers counts like what a task's process answers, except that a task which remains
    // in its entry is processed at once.
    int iResult = m->pCurrentTask ? TR_REMAIN : InitTask(oContext);
    for (;;)
    {
        if (iResult == TR_REMAIN)
        {
            iResult = m->pCurrentTask->Process(oContext);
            if (iResult == TR_REMAIN)
                return TR_REMAIN;
        }
        if (iResult == TR_RETURN)
            break;
        iResult = SwitchTask(iResult, oContext);
    }

    m->pCurrentTask->TaskExit(oContext);
    return GetParent() ? TR_PROCEED : TR_RETURN;
}

void TaskProcessor::OnTaskSwitch(Task const *, Task const &) {}

int TaskProcessor::InitTask(TaskContext & oContext)
{
    int iNextTaskId = 0;
    if (!GetTaskTransitionList().GetNextTaskId(TASK_INIT, TR_PROCEED, iNextTaskId))
        FailFirstTask();

    SetNewTask(iNextTaskId);
    return m->pCurrentTask->TaskEntry(oContext);
}

int TaskProcessor::SwitchTask(int iTaskResult, TaskContext & oContext)
{
    Task & oCurrentTask = *m->pCurrentTask;
    int const iCurrentTaskId = oCurrentTask.GetTaskID();
    int iNextTaskId = 0;
    if (!GetTaskTransitionList().GetNextTaskId(iCurrentTaskId, iTaskResult, iNextTaskId))
        FailTransition(oCurrentTask, iTaskResult);

    // The same object goes on.
    if (iNextTaskId == iCurrentTaskId)
        return TR_REMAIN;

    oCurrentTask.TaskExit(oContext);
    SetNewTask(iNextTaskId);
    return m->pCurrentTask->TaskEntry(oContext);
}

void TaskProcessor::SetNewTask(int iTaskId)
{
    std::unique_ptr<Task> pTask(TaskFactory::Instance().CreateProduct(iTaskId, TaskCreator(this)));
    if (!pTask)
        FailTask(iTaskId);

    OnTaskSwitch(m->pCurrentTask.get(), *pTask);

    // The old task goes when the new one has taken its place.
    m->pCurrentTask = std::move(pTask);
}

} // namespace tsl
