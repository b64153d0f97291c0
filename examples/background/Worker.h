#pragma once

#include <tessel/Task.h>
#include <tessel/TaskProcessor.h>
#include <tessel/TaskTransition.h>

/// The task that does the work, one part after the other.
class Work : public tsl::Task
{
public:
    static constexpr int ID = 1;

    Work(tsl::TaskProcessor * pParent, int iParts, int iPartDuration);

    int GetTaskID() const override { return ID; }

    /// Any message means that it should stop.
    tsl::MessageFilter const & GetDefinedInputFilter() const override { return m_oFilter; }

protected:
    int DoProcess() override;

private:
    int m_iParts;
    int m_iPartDuration;
    tsl::MessageFilterAllMessages m_oFilter;
};

/// A machine that does the work and ends. Its last message is a ResultMessage with the result of the work.
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
