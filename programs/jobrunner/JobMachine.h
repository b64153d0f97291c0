#pragma once

#include "Job.h"
#include "JobChild.h"

#include <tessel/TaskProcessor.h>

class JobCommandMessage;
class StartRoom;

/// The life of one job that is to run:
///
///     starting ---> running ---------> done
///      |  ^           |   |
///      |  |           |   v
///      |  |           | stopping
///      |  |           |   |
///      |  |           v   v
///      |  +-------- retrying
///      |              |
///      +--------------+-------> failed    (from each of them)
///
/// Each state is a task; what they share lives here. The machine sends a JobStateMessage whenever it comes
/// to a state, and takes JobCommandMessages. It needs one long step, on a thread of its own, to its end.
class JobMachine : public tsl::TaskProcessor
{
public:
    /// Registers and unregisters the tasks, for all machines.
    static void RegisterTasks();
    static void UnregisterTasks();

    /// The job and the room must outlive the machine.
    JobMachine(Job const & oJob, int iRetryPause, StartRoom & oRoom);

    int GetTaskID() const override;
    tsl::TaskTransitionList const & GetTaskTransitionList() const override;

    Job const & GetJob() const { return m_oJob; }
    JobChild & GetChild() { return m_oChild; }
    StartRoom & GetRoom() { return m_oRoom; }
    int GetRetryPause() const { return m_iRetryPause; }

    void CountAttempt() { ++m_iAttempts; }
    bool HasAttemptsLeft() const { return m_iAttempts <= m_oJob.iRetries; }

    /// Why the job leaves its state. It is sent with the next state.
    void SetReason(tsl::String const & sReason) { m_sReason = sReason; }

    /// Why its processes are being ended.
    void SetStopReason(tsl::String const & sReason) { m_sStopReason = sReason; }
    tsl::String const & GetStopReason() const { return m_sStopReason; }

    /// Notes that the job is to end.
    void Cancel(JobCommandMessage const & oCommand);
    bool IsCancelled() const { return m_bCancelled; }
    bool IsKilled() const { return m_bKilled; }
    tsl::String const & GetCancelReason() const { return m_sCancelReason; }

protected:
    int DoProcess() override;
    void OnTaskSwitch(tsl::Task const * pOldTask, tsl::Task const & oNewTask) override;

private:
    void SendState();

    Job const & m_oJob;
    int m_iRetryPause;
    StartRoom & m_oRoom;
    int m_iAttempts = 0;
    JobState m_eState = JobState::eStarting;
    tsl::String m_sReason;
    tsl::String m_sStopReason;
    bool m_bCancelled = false;
    bool m_bKilled = false;
    tsl::String m_sCancelReason = "interrupted";
    JobChild m_oChild;
};
