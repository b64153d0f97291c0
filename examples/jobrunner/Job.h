#pragma once

#include <tessel/String.h>

#include <cstddef>
#include <vector>

/// A job as the ini file describes it.
struct Job
{
    tsl::String sName;
    tsl::String sCommand;
    int iTimeout = 0; ///< ms for one attempt; 0 stands for no limit
    int iRetries = 0; ///< further attempts after a failed one
    int iExpectedExitCode = 0;
    int iMode = 0; ///< bits of tsl::CmdLine

    /// The jobs that must have succeeded before, as indexes into the plan.
    std::vector<std::size_t> vAfter;
};

/// All jobs and how to run them.
struct JobPlan
{
    std::vector<Job> vJobs;
    int iParallel = 1;     ///< as many jobs run at once at most
    int iRetryPause = 500; ///< ms between two attempts
};

/// Where a job stands. The last three are ends.
enum class JobState
{
    eWaiting,
    eStarting,
    eRunning,
    eRetrying,
    eDone,
    eFailed,
    eSkipped
};

char const * GetName(JobState eState);
bool IsEnd(JobState eState);
