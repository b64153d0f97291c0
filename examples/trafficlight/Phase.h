#pragma once

#include "CrossingIds.h"

#include <tessel/Task.h>

/// A phase of the lights: reports itself, lasts for some steps and receives the messages to the crossing meanwhile.
///
/// It returns TR_PROCEED at its end, or RESULT_MODE_CHANGE if another mode is wanted. The table of its machine
/// decides where these lead.
class Phase : public tsl::Task
{
public:
    /// The name is shown, and is the key of the duration in the ini file.
    Phase(int iTaskId, tsl::String const & sName, tsl::TaskProcessor * pParent)
        : Task(sName, pParent), m_iTaskId(iTaskId)
    {
    }

    int GetTaskID() const override { return m_iTaskId; }
    tsl::MessageFilter const & GetDefinedInputFilter() const override { return m_oFilter; }

protected:
    int DoTaskEntry() override;
    int DoProcess() override;

    /// In steps, at least 1.
    virtual int GetDuration() const;

private:
    void TakeSignals();
    void Obey(tsl::ValueString const & sWord);
    bool IsModeChangeWanted() const;

    tsl::MessageFilterAllMessages m_oFilter;
    int m_iTaskId;
    int m_iSteps = 0;
};

/// The phase that a waiting pedestrian ends as soon as possible.
class Green : public Phase
{
public:
    explicit Green(tsl::TaskProcessor * pParent) : Phase(PHASE_GREEN, "Green", pParent) {}

protected:
    void DoTaskExit() override;
    int GetDuration() const override;
};
