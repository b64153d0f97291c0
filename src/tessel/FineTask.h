#pragma once

#include <tessel/Export.h>
#include <tessel/MessageFilter.h>
#include <tessel/Task.h>

#include <memory>

namespace tsl
{

/// The end of every machine.
class TSL_EXPORT FineTask : public Task
{
public:
    explicit FineTask(TaskProcessor * pParent);
    FineTask(FineTask const & oSource);
    FineTask & operator=(FineTask const & oSource);
    ~FineTask() override;

    int GetTaskID() const override;
    MessageFilter const & GetDefinedInputFilter() const override;
    int DoProcess() override;

private:
    std::shared_ptr<MessageFilterNoMessage> m_pFilter;
};

} // namespace tsl
