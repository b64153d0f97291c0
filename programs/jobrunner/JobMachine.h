#pragma once

#include "Job.h"

#include <tessel/CmdLine.h>
#include <tessel/TaskProcessor.h>

/// The life of one job:
///
///     waiting ---> starting ---> running ---> done
///        |            |  ^          |
///        v            v  |          v
///     skipped       retrying  or  failed
///
/// Each state is a task; what they share is a member of the machine. The machine sends a JobStateMessage whenever
/// it enters a state, and receives JobCommandMessages. It waits for the command to start; then one long step, on a
/// thread of its own, runs it to its end.
class JobMachine : public tsl::TaskProcessor
{
public:
    /// Registers and unregisters the tasks, for all machines.
    static void RegisterTasks();
    static void UnregisterTasks();

    /// The job must outlive the machine.
    JobMachine(Job const & oJob, int iRetryPause);

    int GetTaskID() const override;
    tsl::TaskTransitionList const & GetTaskTransitionList() const override;

    Job const & GetJob() const { return m_oJob; }
    tsl::CmdLine & GetChild() { return m_oChild; }
    int GetRetryPause() const { return m_iRetryPause; }

    void CountAttempt() { ++m_iAttempts; }
    bool HasAttemptsLeft() const { return m_iAttempts <= m_oJob.iRetries; }

    /// Why the job leaves its state. It is sent with the next state.
    void SetReason(tsl::String const & sReason) { m_sReason = sReason; }

protected:
    int DoProcess() override;
    void OnTaskSwitch(tsl::Task const * pOldTask, tsl::Task const & oNewTask) override;

private:
    void SendState();

    Job const & m_oJob;
    int m_iRetryPause;
    int m_iAttempts = 0;
    JobState m_eState = JobState::eWaiting;
    tsl::String m_sReason;
    tsl::CmdLine m_oChild;
};
