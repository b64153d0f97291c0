#include "JobMachine.h"

#include "JobMessages.h"
#include "JobTasks.h"

#include <tessel/Exception.h>
#include <tessel/TaskFactory.h>
#include <tessel/TaskTransition.h>

namespace
{

constexpr int MACHINE_ID = 7000;

struct Transition
{
    int iSource;
    int iResult;
    int iDestination;
};

constexpr Transition TRANSITIONS[] = {
    {tsl::Task::TASK_INIT, tsl::Task::TR_PROCEED, GetTaskId(JobState::eStarting)},
    {GetTaskId(JobState::eStarting), eSucceeded, GetTaskId(JobState::eRunning)},
    {GetTaskId(JobState::eStarting), eRetry, GetTaskId(JobState::eRetrying)},
    {GetTaskId(JobState::eStarting), eGiveUp, GetTaskId(JobState::eFailed)},
    {GetTaskId(JobState::eRunning), eSucceeded, GetTaskId(JobState::eDone)},
    {GetTaskId(JobState::eRunning), eStop, GetTaskId(JobState::eStopping)},
    {GetTaskId(JobState::eRunning), eRetry, GetTaskId(JobState::eRetrying)},
    {GetTaskId(JobState::eRunning), eGiveUp, GetTaskId(JobState::eFailed)},
    {GetTaskId(JobState::eStopping), eRetry, GetTaskId(JobState::eRetrying)},
    {GetTaskId(JobState::eStopping), eGiveUp, GetTaskId(JobState::eFailed)},
    {GetTaskId(JobState::eRetrying), eSucceeded, GetTaskId(JobState::eStarting)},
    {GetTaskId(JobState::eRetrying), eGiveUp, GetTaskId(JobState::eFailed)},
    {GetTaskId(JobState::eDone), tsl::Task::TR_PROCEED, tsl::Task::TASK_FINE},
    {GetTaskId(JobState::eFailed), tsl::Task::TR_PROCEED, tsl::Task::TASK_FINE},
};

tsl::TaskTransitionList MakeTransitionList()
{
    tsl::TaskTransitionList oList;
    for (Transition const & oRow : TRANSITIONS)
        if (tsl::Result const oResult = oList.AddTransition(oRow.iSource, oRow.iResult, oRow.iDestination);
            oResult.IsError())
            tsl::Exception::Throw(oResult);
    return oList;
}

} // namespace

void JobMachine::RegisterTasks()
{
    for (StateTaskEntry const & oEntry : GetStateTasks())
        tsl::TaskFactory::Instance().Register(GetTaskId(oEntry.eState), oEntry.fCreate);
}

void JobMachine::UnregisterTasks()
{
    for (StateTaskEntry const & oEntry : GetStateTasks())
        tsl::TaskFactory::Instance().Unregister(GetTaskId(oEntry.eState));
}

JobMachine::JobMachine(Job const & oJob, int iRetryPause, StartRoom & oRoom)
    : TaskProcessor(oJob.sName, nullptr),
      m_oJob(oJob),
      m_iRetryPause(iRetryPause),
      m_oRoom(oRoom),
      m_oChild(oJob)
{
}

void JobMachine::Cancel(JobCommandMessage const & oCommand)
{
    m_bCancelled = true;
    m_bKilled = m_bKilled || oCommand.GetCommand() == JobCommandMessage::eKill;
    if (!oCommand.GetReason().IsEmpty())
        m_sCancelReason = oCommand.GetReason().s_str();
}

int JobMachine::GetTaskID() const
{
    return MACHINE_ID;
}

tsl::TaskTransitionList const & JobMachine::GetTaskTransitionList() const
{
    static tsl::TaskTransitionList const oList = MakeTransitionList();
    return oList;
}

int JobMachine::DoProcess()
{
    try
    {
        int const iResult = TaskProcessor::DoProcess();

        // The last action of the thread, since the runner may delete the context after it has received this.
        if (IsEnd(m_eState))
            SendState();
        return iResult;
    }
    catch (tsl::Exception const & oException)
    {
        // The thread of the step reports it. The runner must not wait for this job for ever.
        SetReason(oException.GetText());
        m_eState = JobState::eFailed;
        SendState();
        throw;
    }
}

void JobMachine::OnTaskSwitch(tsl::Task const *, tsl::Task const & oNewTask)
{
    if (oNewTask.GetTaskID() == TASK_FINE)
        return;
    m_eState = static_cast<JobState>(oNewTask.GetTaskID() - GetTaskId(JobState{}));
    if (!IsEnd(m_eState))
        SendState();
}

void JobMachine::SendState()
{
    Send(JobStateMessage(m_oJob.sName, m_eState, m_iAttempts, m_sReason));
    SetReason(tsl::String());
}
