#pragma once

#include "CrossingIds.h"

#include <tessel/Task.h>

/// The task that decides between day, night and the end: returns the wanted mode.
class ModeSwitch : public tsl::Task
{
public:
    explicit ModeSwitch(tsl::TaskProcessor * pParent) : Task("ModeSwitch", pParent) {}

    int GetTaskID() const override { return TASK_MODE_SWITCH; }
    tsl::MessageFilter const & GetDefinedInputFilter() const override { return m_oFilter; }

    /// Looks up the mode of that name; returns false for another word.
    static bool FindMode(tsl::ValueString const & sName, int & iMode);

protected:
    int DoProcess() override;

private:
    tsl::MessageFilterNoMessage m_oFilter;
};
