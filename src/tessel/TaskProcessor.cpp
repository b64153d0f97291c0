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

    int iResult = m->pCurrentTask ? m->pCurrentTask->Process(oContext) : InitTask(oContext);
    while (iResult != TR_REMAIN && iResult != TR_RETURN)
        iResult = SwitchTask(iResult, oContext);
    if (iResult == TR_REMAIN)
        return TR_REMAIN;

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
    return m->pCurrentTask->Begin(oContext);
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
        return oCurrentTask.Process(oContext);

    oCurrentTask.TaskExit(oContext);
    SetNewTask(iNextTaskId);
    return m->pCurrentTask->Begin(oContext);
}

void TaskProcessor::SetNewTask(int iTaskId)
{
    std::unique_ptr<Task> pTask(TaskFactory::Instance().CreateProduct(iTaskId, TaskCreator(this)));

    // A function that gives the current task once more has made none.
    if (pTask == m->pCurrentTask)
        static_cast<void>(pTask.release());
    if (!pTask)
        FailTask(iTaskId);

    OnTaskSwitch(m->pCurrentTask.get(), *pTask);

    // The old task goes when the new one has taken its place.
    m->pCurrentTask = std::move(pTask);
}

} // namespace tsl
