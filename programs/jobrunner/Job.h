#pragma once

#include <tessel/String.h>

#include <cstddef>
#include <vector>

/// The settings of a job in the ini file.
struct Job
{
    tsl::String sName;
    tsl::String sCommand;
    int iTimeout = 0; ///< ms for one attempt; 0 means no limit
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
    int iParallel = 1;     ///< how many jobs run at once at most
    int iRetryPause = 500; ///< ms between two attempts
};

/// The state of a job. The last three are final.
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
