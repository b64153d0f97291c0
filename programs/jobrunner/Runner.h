#pragma once

#include "Bell.h"
#include "Job.h"
#include "JobContext.h"
#include "JobMessages.h"

#include <tessel/Duration.h>

#include <memory>
#include <vector>

/// The result of a job.
struct JobReport
{
    JobState eState = JobState::eWaiting;
    int iAttempts = 0;
    long iDuration = 0; ///< ms from the first start to the end, pauses included
    tsl::String sReason;
};

/// Runs the jobs of a plan: each after those that it waits for have succeeded, and as many at once as the plan
/// says. Every change of a state is sent over the global bus as a JobStateMessage.
class Runner
{
public:
    /// The plan must outlive the runner and have no cycle.
    explicit Runner(JobPlan const & oPlan);
    Runner(Runner const &) = delete;
    Runner & operator=(Runner const &) = delete;
    ~Runner();

    /// Returns when all jobs have ended. After SIGINT or SIGTERM it ends the running ones and starts no other one.
    void Run();

    /// One for each job of the plan.
    std::vector<JobReport> GetReports() const;

    bool IsInterrupted() const { return m_bInterrupted; }

private:
    struct Entry
    {
        std::unique_ptr<JobContext> pContext; ///< null until the job gets its first command
        JobReport oReport;
        tsl::Duration oRunTime;
    };

    bool IsDone() const;
    void Interrupt();
    void CommandWaitingJobs();
    void CommandWaitingJob(std::size_t iJob);
    void Tell(std::size_t iJob, JobCommandMessage const & oCommand);
    void ReadStates();
    void Note(Entry & oEntry, JobStateMessage const & oMessage);

    JobPlan const & m_oPlan;
    Bell m_oBell;
    std::vector<Entry> m_vEntries;
    int m_iRunning = 0; ///< jobs that have a command and have not ended
    bool m_bInterrupted = false;
};
