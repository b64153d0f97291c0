#include "JobMachine.h"

#include "JobMessages.h"

#include <tessel/Duration.h>
#include <tessel/Exception.h>
#include <tessel/Support.h>
#include <tessel/TaskFactory.h>
#include <tessel/TaskTransition.h>

#include <memory>

namespace
{

// Ids that plug-ins are not likely to use.
constexpr int MACHINE_ID = 7000;
constexpr int FIRST_STATE_ID = 7001;

// For a child that was killed.
constexpr int END_TIMEOUT = 1000; // ms

enum StateResult
{
    eStart,
    eSkip,
    eSucceeded,
    eRetry,
    eGiveUp
};

constexpr int GetTaskId(JobState eState)
{
    return FIRST_STATE_ID + static_cast<int>(eState);
}

/// A state of a job.
template<JobState STATE>
class StateTask : public tsl::Task
{
public:
    explicit StateTask(tsl::TaskProcessor * pParent)
        : Task(GetName(STATE), pParent), m_oMachine(static_cast<JobMachine &>(*pParent))
    {
    }

    int GetTaskID() const override { return GetTaskId(STATE); }
    tsl::MessageFilter const & GetDefinedInputFilter() const override { return m_oFilter; }

protected:
    JobMachine & GetMachine() const { return m_oMachine; }

    /// The runner's next command, if there is one within iTimeout milliseconds.
    std::unique_ptr<JobCommandMessage> ReceiveCommand(int iTimeout)
    {
        std::unique_ptr<tsl::Message> pMessage(ReceiveFilter(m_oFilter, iTimeout));
        return std::unique_ptr<JobCommandMessage>(static_cast<JobCommandMessage *>(pMessage.release()));
    }

    bool IsCancelled(int iTimeout)
    {
        auto const pCommand = ReceiveCommand(iTimeout);
        return pCommand && pCommand->GetCommand() == JobCommandMessage::eCancel;
    }

    int GiveUp(tsl::String const & sReason)
    {
        m_oMachine.SetReason(sReason);
        return eGiveUp;
    }

    /// Ends a failed attempt; the job is retried if it has retries left.
    int FailAttempt(tsl::String const & sReason)
    {
        m_oMachine.SetReason(sReason);
        return m_oMachine.HasAttemptsLeft() ? eRetry : eGiveUp;
    }

private:
    class CommandFilter : public tsl::MessageFilter
    {
    public:
        bool Match(tsl::Message const & oMessage) const override
        {
            return &oMessage.GetClassDesc() == &JobCommandMessage::GetStaticClassDesc();
        }
    };

    JobMachine & m_oMachine;
    CommandFilter m_oFilter;
};

class WaitingTask : public StateTask<JobState::eWaiting>
{
public:
    using StateTask::StateTask;

protected:
    int DoProcess() override
    {
        auto const pCommand = ReceiveCommand(0);
        if (!pCommand)
            return TR_REMAIN;
        if (pCommand->GetCommand() == JobCommandMessage::eStart)
            return eStart;
        GetMachine().SetReason(pCommand->GetReason().s_str());
        return eSkip;
    }
};

class StartingTask : public StateTask<JobState::eStarting>
{
public:
    using StateTask::StateTask;

protected:
    int DoProcess() override
    {
        GetMachine().CountAttempt();
        tsl::CmdLine & oChild = GetMachine().GetChild();
        oChild.SetCommand(GetMachine().GetJob().sCommand);
        oChild.SetMode(GetMachine().GetJob().iMode);

        int iProcessId = 0;
        tsl::Result const oResult = oChild.Run(iProcessId);
        if (oResult.IsOk())
            return eSucceeded;

        // There is a child only if that of the last attempt could not be ended.
        static_cast<void>(oChild.Kill(1));
        static_cast<void>(oChild.WaitTermination(END_TIMEOUT));
        return FailAttempt(Describe(oResult));
    }

private:
    static tsl::String Describe(tsl::Result const & oResult)
    {
        tsl::String sText(oResult.GetText().s_str());
        for (int i = 0; i < oResult.GetHistorySize(); ++i)
            sText << " " << oResult.GetHistory(i).GetText().s_str();
        return sText;
    }
};

class RunningTask : public StateTask<JobState::eRunning>
{
public:
    using StateTask::StateTask;

protected:
    int DoProcess() override
    {
        tsl::Duration oRunTime;
        oRunTime.Start();
        int const iTimeout = GetMachine().GetJob().iTimeout;
        for (;;)
        {
            bool const bRunning = GetMachine().GetChild().IsRunning();
            if (IsCancelled(0))
            {
                EndChild();
                return GiveUp("interrupted");
            }
            if (bRunning && iTimeout > 0 && oRunTime.GetDuration() >= iTimeout)
            {
                EndChild();
                return FailAttempt(tsl::String("not finished after ") + iTimeout + " ms");
            }
            if (ReportLines(READ_DURATION))
                continue;
            if (!bRunning)
                return CheckExitCode();
            Wait(POLL_INTERVAL, false);
        }
    }

private:
    // Nothing signals the child's lines or its end, so poll.
    static constexpr int POLL_INTERVAL = 5; // ms

    // Limited, so that a child that never stops writing can be ended.
    static constexpr int READ_DURATION = 20; // ms

    // Such a child is far ahead of the log. The lines that it has left must not delay the runner.
    static constexpr int LAST_READ_DURATION = 2000; // ms

    /// Checks the exit code, after the child has ended and its lines were reported.
    int CheckExitCode()
    {
        tsl::CmdLine const & oChild = GetMachine().GetChild();
        static_cast<void>(oChild.WaitTermination(END_TIMEOUT)); // Has ended; this clears up.
        int const iExpected = GetMachine().GetJob().iExpectedExitCode;
        if (oChild.GetExitCode() == iExpected)
            return eSucceeded;
        return FailAttempt(tsl::String("exit code ") + oChild.GetExitCode() + " instead of " + iExpected);
    }

    void EndChild()
    {
        tsl::CmdLine & oChild = GetMachine().GetChild();
        static_cast<void>(oChild.Kill(1)); // It may have just ended by itself.
        static_cast<void>(oChild.WaitTermination(END_TIMEOUT));
        static_cast<void>(ReportLines(LAST_READ_DURATION));
    }

    /// Sends the lines that have arrived over the bus, for at most iDuration milliseconds. Returns whether there
    /// were any.
    bool ReportLines(int iDuration)
    {
        tsl::CmdLine & oChild = GetMachine().GetChild();
        tsl::Duration oTime;
        oTime.Start();
        bool bAny = false;
        do
        {
            std::unique_ptr<tsl::String> const pOutput(oChild.ReceiveStdOut());
            std::unique_ptr<tsl::String> const pError(oChild.ReceiveStdErr());
            if (!pOutput && !pError)
                break;
            ReportLine("out", pOutput.get());
            ReportLine("err", pError.get());
            bAny = true;
        } while (oTime.GetDuration() < iDuration);
        return bAny;
    }

    /// Sends a line in pieces if it is longer than the log can show.
    void ReportLine(char const * sStream, tsl::String const * pLine)
    {
        constexpr unsigned int iLengthMax = tsl::String::FORMAT_LENGTH_MAX;
        for (unsigned int i = 0; pLine && i < pLine->GetLength(); i += iLengthMax)
            tsl::Support::DispatchMessage(
                JobLineMessage(GetMachine().GetJob().sName, sStream, pLine->Mid(i, iLengthMax)));
    }
};

class RetryingTask : public StateTask<JobState::eRetrying>
{
public:
    using StateTask::StateTask;

protected:
    int DoProcess() override
    {
        return IsCancelled(GetMachine().GetRetryPause()) ? GiveUp("interrupted") : eStart;
    }
};

template<JobState STATE>
class EndTask : public StateTask<STATE>
{
public:
    using StateTask<STATE>::StateTask;

protected:
    int DoProcess() override { return tsl::Task::TR_PROCEED; }
};

template<class State>
tsl::Task * Create(tsl::TaskProcessor * pParent)
{
    return new State(pParent);
}

struct StateEntry
{
    JobState eState;
    tsl::TaskCreationFunction fCreate;
};

constexpr StateEntry STATES[] = {
    {JobState::eWaiting, &Create<WaitingTask>},
    {JobState::eStarting, &Create<StartingTask>},
    {JobState::eRunning, &Create<RunningTask>},
    {JobState::eRetrying, &Create<RetryingTask>},
    {JobState::eDone, &Create<EndTask<JobState::eDone>>},
    {JobState::eFailed, &Create<EndTask<JobState::eFailed>>},
    {JobState::eSkipped, &Create<EndTask<JobState::eSkipped>>},
};

struct Transition
{
    int iSource;
    int iResult;
    int iDestination;
};

constexpr Transition TRANSITIONS[] = {
    {tsl::Task::TASK_INIT, tsl::Task::TR_PROCEED, GetTaskId(JobState::eWaiting)},
    {GetTaskId(JobState::eWaiting), eStart, GetTaskId(JobState::eStarting)},
    {GetTaskId(JobState::eWaiting), eSkip, GetTaskId(JobState::eSkipped)},
    {GetTaskId(JobState::eStarting), eSucceeded, GetTaskId(JobState::eRunning)},
    {GetTaskId(JobState::eStarting), eRetry, GetTaskId(JobState::eRetrying)},
    {GetTaskId(JobState::eStarting), eGiveUp, GetTaskId(JobState::eFailed)},
    {GetTaskId(JobState::eRunning), eSucceeded, GetTaskId(JobState::eDone)},
    {GetTaskId(JobState::eRunning), eRetry, GetTaskId(JobState::eRetrying)},
    {GetTaskId(JobState::eRunning), eGiveUp, GetTaskId(JobState::eFailed)},
    {GetTaskId(JobState::eRetrying), eStart, GetTaskId(JobState::eStarting)},
    {GetTaskId(JobState::eRetrying), eGiveUp, GetTaskId(JobState::eFailed)},
    {GetTaskId(JobState::eDone), tsl::Task::TR_PROCEED, tsl::Task::TASK_FINE},
    {GetTaskId(JobState::eFailed), tsl::Task::TR_PROCEED, tsl::Task::TASK_FINE},
    {GetTaskId(JobState::eSkipped), tsl::Task::TR_PROCEED, tsl::Task::TASK_FINE},
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
    for (StateEntry const & oEntry : STATES)
        tsl::TaskFactory::Instance().Register(GetTaskId(oEntry.eState), oEntry.fCreate);
}

void JobMachine::UnregisterTasks()
{
    for (StateEntry const & oEntry : STATES)
        tsl::TaskFactory::Instance().Unregister(GetTaskId(oEntry.eState));
}

JobMachine::JobMachine(Job const & oJob, int iRetryPause)
    : TaskProcessor(oJob.sName, nullptr), m_oJob(oJob), m_iRetryPause(iRetryPause)
{
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
    m_eState = static_cast<JobState>(oNewTask.GetTaskID() - FIRST_STATE_ID);
    if (!IsEnd(m_eState))
        SendState();
}

void JobMachine::SendState()
{
    Send(JobStateMessage(m_oJob.sName, m_eState, m_iAttempts, m_sReason));
    SetReason(tsl::String());
}
