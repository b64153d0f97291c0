#include "JobTasks.h"

#include "JobMachine.h"
#include "JobMessages.h"
#include "LogWatch.h"
#include "StartRoom.h"
#include "StopSignal.h"

#include <tessel/Duration.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace
{

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
    Job const & GetJob() const { return m_oMachine.GetJob(); }
    JobChild & GetChild() const { return m_oMachine.GetChild(); }

    /// Whether the runner wants the job to end, after so many milliseconds at most.
    bool IsCancelled(int iTimeout)
    {
        std::unique_ptr<tsl::Message> const pMessage(ReceiveFilter(m_oFilter, iTimeout));
        if (pMessage)
            m_oMachine.Cancel(static_cast<JobCommandMessage const &>(*pMessage));
        return m_oMachine.IsCancelled();
    }

    int GiveUp(tsl::String const & sReason)
    {
        m_oMachine.SetReason(sReason);
        return eGiveUp;
    }

    /// The attempt has failed; there is another one if any is left.
    int FailAttempt(tsl::String const & sReason)
    {
        m_oMachine.SetReason(sReason);
        return m_oMachine.HasAttemptsLeft() ? eRetry : eGiveUp;
    }

    /// Puts the lines that have come on the bus; whether there were any.
    bool ReportLines()
    {
        // So that a job which never stops writing can be ended.
        constexpr int iDuration = 20; // ms
        return GetChild().TakeLines(
            [this](char const * sStream, tsl::String const & sLine)
            {
                for (JobLineMessage const & oMessage :
                    JobLineMessage::Make(GetJob().sName, sStream, sLine.s_str()))
                    LogWatch::Dispatch(oMessage);
            },
            iDuration);
    }

    /// When nothing more can come.
    void ReportLastLines()
    {
        GetChild().Close();
        while (ReportLines())
        {
        }
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

/// How long to wait before the next look at a job: it tells of neither its lines nor its end. Longer and longer while
/// nothing happens, so that many jobs cost little and short ones are not held up.
class LookInterval
{
public:
    LookInterval() { m_oQuiet.Start(); }

    /// Something has happened.
    void Reset() { m_oQuiet.Start(); }

    int Get() const { return static_cast<int>(std::clamp<long>(m_oQuiet.GetDuration() / 8, 1, LONGEST)); }

private:
    static constexpr long LONGEST = 32; // ms
    tsl::Duration m_oQuiet;
};

class StartingTask : public StateTask<JobState::eStarting>
{
public:
    using StateTask::StateTask;

protected:
    int DoProcess() override
    {
        constexpr int iPause = 50; // ms
        for (;;)
        {
            if (IsCancelled(0) || StopSignal::HasCome())
                return GiveUp(GetMachine().GetCancelReason());
            tsl::Result const oResult = GetChild().Start();
            if (oResult.IsOk())
                return Begin();
            if (!IsLackOfRoom(oResult) || !GetMachine().GetRoom().CanWait())
            {
                GetMachine().CountAttempt();
                return FailAttempt(Describe(oResult));
            }
            if (IsCancelled(iPause))
                return GiveUp(GetMachine().GetCancelReason());
        }
    }

private:
    int Begin()
    {
        // The last moment, so that no job starts after a signal.
        if (StopSignal::HasCome())
        {
            static_cast<void>(GetChild().End(Processes::Force::eKill)); // There is one process.
            GetChild().Close();
            return GiveUp(GetMachine().GetCancelReason());
        }
        GetMachine().CountAttempt();
        GetChild().Continue();
        return eSucceeded;
    }

    static bool IsLackOfRoom(tsl::Result const & oResult)
    {
        int const iCauses = oResult.GetHistorySize();
        return iCauses > 0 && Processes::IsLackOfRoom(oResult.GetHistory(iCauses - 1).GetErrorCode());
    }

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
        GetMachine().GetRoom().AddJob();
        int const iResult = Watch();
        if (iResult != eStop)
            GetMachine().GetRoom().RemoveJob();
        return iResult;
    }

private:
    int Watch()
    {
        tsl::Duration oRunTime;
        oRunTime.Start();
        int const iTimeout = GetJob().iTimeout;
        for (LookInterval oInterval;;)
        {
            bool const bEnded = GetChild().HasEnded();
            bool const bLines = ReportLines();
            if (bLines)
                oInterval.Reset();
            if (IsCancelled(bLines || bEnded ? 0 : oInterval.Get()))
                return Stop(GetMachine().GetCancelReason());
            if (bEnded && !bLines)
                return Judge();
            if (iTimeout > 0 && oRunTime.GetDuration() >= iTimeout && !GetChild().HasEnded())
                return Stop(tsl::String("not finished after ") + iTimeout + " ms");
        }
    }

    int Stop(tsl::String const & sReason)
    {
        GetMachine().SetReason(sReason);
        GetMachine().SetStopReason(sReason);
        return eStop;
    }

    /// Of a job that has ended. What it leaves behind may run on.
    int Judge()
    {
        ReportLastLines();
        int const iExpected = GetJob().iExpectedExitCode;
        if (int const iSignal = GetChild().GetSignal())
            return FailAttempt(tsl::String("killed by ") + Processes::GetSignalName(iSignal));
        if (GetChild().GetExitCode() == iExpected)
            return eSucceeded;
        return FailAttempt(tsl::String("exit code ") + GetChild().GetExitCode() + " instead of " + iExpected);
    }
};

/// Ends the processes of a job, first politely.
class StoppingTask : public StateTask<JobState::eStopping>
{
public:
    using StateTask::StateTask;

protected:
    int DoProcess() override
    {
        EndProcesses();
        ReportLastLines();
        GetMachine().GetRoom().RemoveJob();
        if (GetMachine().IsCancelled())
            return GiveUp(GetMachine().GetCancelReason());
        return FailAttempt(GetMachine().GetStopReason());
    }

private:
    void EndProcesses()
    {
        // For those that even SIGKILL does not end, in the kernel for instance.
        constexpr int iPatience = 5000; // ms

        tsl::Duration oTime;
        oTime.Start();
        LookInterval oInterval;
        bool bLeft = GetChild().End(Processes::Force::eAsk);
        while (bLeft && oTime.GetDuration() < GetJob().iGrace && !GetMachine().IsKilled())
        {
            WatchLines(oInterval);
            bLeft = GetChild().IsLeft();
        }
        oTime.Start();
        while (bLeft && oTime.GetDuration() < iPatience)
        {
            bLeft = GetChild().End(Processes::Force::eKill);
            WatchLines(oInterval);
        }
    }

    /// The job may go on writing until it has ended.
    void WatchLines(LookInterval & oInterval)
    {
        bool const bLines = ReportLines();
        static_cast<void>(IsCancelled(bLines ? 0 : oInterval.Get())); // noted by the machine
    }
};

class RetryingTask : public StateTask<JobState::eRetrying>
{
public:
    using StateTask::StateTask;

protected:
    int DoProcess() override
    {
        return IsCancelled(GetMachine().GetRetryPause()) ? GiveUp(GetMachine().GetCancelReason())
                                                         : eSucceeded;
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

} // namespace

std::span<StateTaskEntry const> GetStateTasks()
{
    static constexpr StateTaskEntry aTasks[] = {
        {JobState::eStarting, &Create<StartingTask>},
        {JobState::eRunning, &Create<RunningTask>},
        {JobState::eStopping, &Create<StoppingTask>},
        {JobState::eRetrying, &Create<RetryingTask>},
        {JobState::eDone, &Create<EndTask<JobState::eDone>>},
        {JobState::eFailed, &Create<EndTask<JobState::eFailed>>},
    };
    return aTasks;
}
