#pragma once

#include <tessel/Task.h>
#include <tessel/TaskProcessor.h>
#include <tessel/TaskTransition.h>

/// The work: so many parts, one after the other.
class Work : public tsl::Task
{
public:
    static constexpr int ID = 1;

    Work(tsl::TaskProcessor * pParent, int iParts, int iPartDuration);

    int GetTaskID() const override { return ID; }

    /// Whatever comes asks it to stop.
    tsl::MessageFilter const & GetDefinedInputFilter() const override { return m_oFilter; }

protected:
    int DoProcess() override;

private:
    int m_iParts;
    int m_iPartDuration;
    tsl::MessageFilterAllMessages m_oFilter;
};

/// A machine that works and ends. The last that it sends is a ResultMessage: how the work went.
class Worker : public tsl::TaskProcessor
{
public:
    static constexpr int ID = 0;

    /// The duration is in milliseconds.
    Worker(int iParts, int iPartDuration);

    int GetTaskID() const override { return ID; }
    tsl::TaskTransitionList const & GetTaskTransitionList() const override { return m_oTransitions; }

protected:
    int DoProcess() override;

private:
    static tsl::Task * CreateWork(tsl::TaskProcessor * pParent);

    int m_iParts;
    int m_iPartDuration;
    tsl::TaskTransitionList m_oTransitions;
};
