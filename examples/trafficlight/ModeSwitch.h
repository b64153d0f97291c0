#pragma once

#include "CrossingIds.h"

#include <tessel/Task.h>

/// Where the crossing decides between day, night and the end: answers with the mode that is wanted.
class ModeSwitch : public tsl::Task
{
public:
    explicit ModeSwitch(tsl::TaskProcessor * pParent) : Task("ModeSwitch", pParent) {}

    int GetTaskID() const override { return TASK_MODE_SWITCH; }
    tsl::MessageFilter const & GetDefinedInputFilter() const override { return m_oFilter; }

    /// The mode of that name; false for another word.
    static bool FindMode(tsl::ValueString const & sName, int & iMode);

protected:
    int DoProcess() override;

private:
    tsl::MessageFilterNoMessage m_oFilter;
};
