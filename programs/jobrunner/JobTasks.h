#pragma once

#include "Job.h"

#include <tessel/TaskFactory.h>

#include <span>

/// What the task of a state may return to the machine.
enum StateResult
{
    eSucceeded,
    eStop, ///< the processes of the job have to be ended
    eRetry,
    eGiveUp
};

constexpr int GetTaskId(JobState eState)
{
    // Apart from the ids that plug-ins are likely to use.
    constexpr int iFirst = 7001;
    return iFirst + static_cast<int>(eState);
}

struct StateTaskEntry
{
    JobState eState;
    tsl::TaskCreationFunction fCreate;
};

/// The tasks of all states; each works with a JobMachine only.
std::span<StateTaskEntry const> GetStateTasks();
