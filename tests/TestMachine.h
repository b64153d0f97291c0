#pragma once

#include "TestMessages.h"

#include <tesselkit/MachineDriver.h>

namespace tsltest
{

/// A task whose operations are open to the test, and whose process is a function of the test's.
class OpenTask : public tsl::Task
{
public:
    using Work = std::function<int(OpenTask &)>;

    OpenTask(tsl::String const & sName, tsl::TaskProcessor * pParent, int iId, Work fWork)
        : Task(sName, pParent), m_iId(iId), m_fWork(std::move(fWork))
    {
    }

    int GetTaskID() const override { return m_iId; }
    tsl::MessageFilter const & GetDefinedInputFilter() const override { return m_oFilter; }

    using Task::ClearReveiveBuffer;
    using Task::ClearSendBuffer;
    using Task::GetContext;
    using Task::GetLocalVar;
    using Task::GetParent;
    using Task::GetSimulationMode;
    using Task::GetVar;
    using Task::Receive;
    using Task::ReceiveFilter;
    using Task::Send;
    using Task::SetLocalVar;
    using Task::SetTaskName;
    using Task::SetVar;
    using Task::Wait;

protected:
    int DoProcess() override { return m_fWork ? m_fWork(*this) : TR_REMAIN; }

private:
    int m_iId;
    Work m_fWork;
    tsl::MessageFilterAllMessages m_oFilter;
};

/// Work after which the task remains.
inline OpenTask::Work Remaining(std::function<void(OpenTask &)> fWork)
{
    return [fWork = std::move(fWork)](OpenTask & oTask)
    {
        fWork(oTask);
        return +tsl::Task::TR_REMAIN;
    };
}

/// A machine of a task that does what the test says, and of a second one that does the same. Result 0 leads
/// from the one to the other.
class OneTaskMachine : public tsl::TaskProcessor
{
public:
    static constexpr int TASK_ID = 101;
    static constexpr int OTHER_TASK_ID = 102;

    explicit OneTaskMachine(OpenTask::Work fWork, int iId = 100, tsl::TaskProcessor * pParent = nullptr)
        : TaskProcessor("machine", pParent), m_iId(iId), m_fWork(std::move(fWork))
    {
        tsl::TaskFactory::Instance().Register(TASK_ID, &Create<TASK_ID>);
        tsl::TaskFactory::Instance().Register(OTHER_TASK_ID, &Create<OTHER_TASK_ID>);
        // The table takes these ids.
        static_cast<void>(oTransitions.AddTransition(TASK_INIT, TR_PROCEED, TASK_ID));
        static_cast<void>(oTransitions.AddTransition(TASK_ID, 0, OTHER_TASK_ID));
        static_cast<void>(oTransitions.AddTransition(OTHER_TASK_ID, 0, TASK_ID));
    }

    int GetTaskID() const override { return m_iId; }
    tsl::TaskTransitionList const & GetTaskTransitionList() const override { return oTransitions; }

    tsl::TaskTransitionList oTransitions;

private:
    template<int iId>
    static tsl::Task * Create(tsl::TaskProcessor * pParent)
    {
        return new OpenTask("task", pParent, iId, static_cast<OneTaskMachine *>(pParent)->m_fWork);
    }

    int m_iId;
    OpenTask::Work m_fWork;
};

/// A context whose operations are open to the test and whose waiting takes no time.
class OpenContext : public tsl::MachineDriver
{
public:
    using MachineDriver::MachineDriver;
    using TaskContext::ClearReveiveBuffer;
    using TaskContext::ClearSendBuffer;
    using TaskContext::FormatTaskIDStack;
    using TaskContext::GetLocalVar;
    using TaskContext::GetSimulationMode;
    using TaskContext::GetVar;
    using TaskContext::Receive;
    using TaskContext::ReceiveFilter;
    using TaskContext::Send;
    using TaskContext::SetLocalVar;
    using TaskContext::SetVar;
};

} // namespace tsltest
