#pragma once

#include <tessel/String.h>

#include <cstddef>
#include <string>
#include <vector>

/// The settings of a job in the ini file.
struct Job
{
    tsl::String sName;
    tsl::String sCommand;
    int iTimeout = 0; ///< ms for one attempt; 0 means no limit
    int iRetries = 0; ///< further attempts after a failed one
    int iExpectedExitCode = 0;
    int iGrace = 2000;                     ///< ms that its processes have to end by themselves
    bool bShell = false;                   ///< a shell runs the command
    bool bQuiet = false;                   ///< its output is not taken
    std::string sFolder;                   ///< empty for the current one
    std::string sStdin;                    ///< a file, "yes" for that of the runner, empty for none
    std::vector<std::string> vEnvironment; ///< as NAME=value

    /// The command line that starts it.
    tsl::String sLauncher;

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
    eStopping, ///< its processes are being ended
    eRetrying,
    eDone,
    eFailed,
    eSkipped
};

char const * GetName(JobState eState);
bool IsEnd(JobState eState);
