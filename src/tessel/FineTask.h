#pragma once

#include <tessel/Export.h>
#include <tessel/MessageFilter.h>
#include <tessel/Task.h>

#include <memory>

namespace tsl
{

/// The last task of every machine, which ends it. The library registers it in TaskFactory under Task::TASK_FINE, so
/// a program only names that id as a destination:
///
///     tsl::Result const oResult = oTransitions.AddTransition(eLastTask, Task::TR_PROCEED, Task::TASK_FINE);
///
/// The machine owns it and calls it on the thread of its step.
class TSL_EXPORT FineTask : public Task
{
public:
    /// See Task.
    explicit FineTask(TaskProcessor * pParent);
    FineTask(FineTask const & oSource);
    FineTask & operator=(FineTask const & oSource);
    ~FineTask() override;

    int GetTaskID() const override;
    MessageFilter const & GetDefinedInputFilter() const override;

    /// Returns TR_RETURN.
    int DoProcess() override;

private:
    std::shared_ptr<MessageFilterNoMessage> m_pFilter;
};

} // namespace tsl
