#include <tessel/TaskProcessor.h>

#include "TaskEngine.h"

#include <tessel/Assertion.h>

namespace tsl
{

TaskProcessor::TaskProcessor(String const & sName, TaskProcessor * pParent) : Task(sName, pParent) {}

TaskProcessor::TaskProcessor(TaskProcessor const & oSource) = default;
TaskProcessor & TaskProcessor::operator=(TaskProcessor const & oSource) = default;

TaskProcessor::~TaskProcessor()
{
    // Delete the task now, while its parent is still a complete TaskProcessor. Copies share the task.
    if (TaskEngine::IsLastOwner(*this))
        TaskEngine::GetCurrentTask(*this).reset();
}

MessageFilter const & TaskProcessor::GetDefinedInputFilter() const
{
    XAssertionFailed("false", "Unexpected");
}

Task const * TaskProcessor::GetCurrentTask() const
{
    return TaskEngine::GetCurrentTask(*this).get();
}

int TaskProcessor::DoProcess()
{
    TaskContext & oContext = TaskEngine::GetContext(*this);
    Task * const pCurrentTask = TaskEngine::GetCurrentTask(*this).get();

    int iResult =
        pCurrentTask ? TaskEngine::Process(*pCurrentTask, oContext) : TaskEngine::InitTask(*this, oContext);
    while (iResult != TR_REMAIN && iResult != TR_RETURN)
        iResult = TaskEngine::SwitchTask(*this, iResult, oContext);
    if (iResult == TR_REMAIN)
        return TR_REMAIN;

    TaskEngine::Exit(*TaskEngine::GetCurrentTask(*this), oContext);
    return GetParent() ? TR_PROCEED : TR_RETURN;
}

void TaskProcessor::OnTaskSwitch(Task const *, Task const &) {}

} // namespace tsl
