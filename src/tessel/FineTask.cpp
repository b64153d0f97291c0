#include <tessel/FineTask.h>

namespace tsl
{

FineTask::FineTask(TaskProcessor * pParent)
    : Task("FineTask", pParent), m_pFilter(std::make_shared<MessageFilterNoMessage>())
{
}

FineTask::FineTask(FineTask const & oSource) = default;
FineTask & FineTask::operator=(FineTask const & oSource) = default;
FineTask::~FineTask() = default;

int FineTask::GetTaskID() const
{
    return TASK_FINE;
}

MessageFilter const & FineTask::GetDefinedInputFilter() const
{
    return *m_pFilter;
}

int FineTask::DoProcess()
{
    return TR_RETURN;
}

} // namespace tsl
