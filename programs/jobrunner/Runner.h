#pragma once

#include "Bell.h"
#include "Job.h"
#include "JobContext.h"
#include "JobMessages.h"
#include "StartRoom.h"

#include <tessel/Duration.h>

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <utility>
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
    Runner(JobPlan const & oPlan, bool bFailFast);
    Runner(Runner const &) = delete;
    Runner & operator=(Runner const &) = delete;
    ~Runner();

    /// Returns when all jobs have ended. After a stop signal the running ones are ended, no other one is started, and
    /// nothing that a job has started is left. fLook is called again and again; if it is false, it is like a signal.
    void Run(std::function<bool()> const & fLook);

    /// One for each job of the plan.
    std::vector<JobReport> GetReports() const;

    bool IsInterrupted() const { return m_bInterrupted; }

private:
    struct Entry
    {
        std::unique_ptr<JobContext> pContext; ///< while the job runs
        std::size_t iOpen = 0;                ///< jobs that it waits for
        std::vector<std::size_t> vFollowers;  ///< jobs that wait for it
        JobReport oReport;
        tsl::Duration oRunTime;
    };

    void LookForSignals();
    void Interrupt();
    void Cancel(JobCommandMessage const & oCommand);
    void StartJobs();
    bool StartJob(std::size_t iJob);
    void SkipAll(tsl::String const & sReason);
    void SkipFollowers();
    void DropContexts();
    void ReadStates();
    void ReadStates(std::size_t iJob);
    void Note(std::size_t iJob, JobStateMessage const & oMessage);
    void End(std::size_t iJob);
    void Skip(std::size_t iJob, tsl::String const & sReason);
    void EndDaemons();

    JobPlan const & m_oPlan;
    bool m_bFailFast;
    std::size_t m_iParallel;
    Bell m_oBell;
    StartRoom m_oRoom;
    std::vector<Entry> m_vEntries;
    std::vector<std::size_t> m_vReady;   ///< may start, in the order of the plan; the next one is the last
    std::vector<std::size_t> m_vRunning; ///< have a context
    std::vector<std::size_t> m_vFailed;  ///< their followers have to be skipped

    /// Of jobs that have ended, with the time when they did.
    std::deque<std::pair<std::chrono::steady_clock::time_point, std::unique_ptr<JobContext>>> m_vOldContexts;
    std::size_t m_iLeft;     ///< have not ended
    bool m_bStopped = false; ///< no other job starts
    bool m_bInterrupted = false;
    bool m_bKilled = false;
};
