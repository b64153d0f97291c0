#pragma once

#include <tessel/Task.h>
#include <tessel/TaskProcessor.h>
#include <tessel/TaskTransition.h>

/// Sends a tick in each step, until it has sent all.
class Tick : public tsl::Task
{
public:
    static constexpr int ID = 1;

    Tick(tsl::TaskProcessor * pParent, int iCount);

    int GetTaskID() const override { return ID; }
    tsl::MessageFilter const & GetDefinedInputFilter() const override { return m_oFilter; }

protected:
    int DoProcess() override;

private:
    int m_iCount;
    int m_iTicks = 0;
    tsl::MessageFilterNoMessage m_oFilter;
};

/// The machine: ticks, and ends with a ResultMessage.
class Ticker : public tsl::TaskProcessor
{
public:
    static constexpr int ID = 0;

    explicit Ticker(int iCount);

    int GetTaskID() const override { return ID; }
    tsl::TaskTransitionList const & GetTaskTransitionList() const override { return m_oTransitions; }

protected:
    int DoProcess() override;

private:
    static tsl::Task * CreateTick(tsl::TaskProcessor * pParent);

    int m_iCount;
    tsl::TaskTransitionList m_oTransitions;
};
