#pragma once

#include <memory>
#include <vector>

#include <sys/types.h>

namespace Processes
{

/// A process below this one.
struct ProcessEntry
{
    pid_t iProcess = 0;
    pid_t iParent = 0;
    pid_t iGroup = 0;
    pid_t iSession = 0;
    bool bEnded = false; ///< nobody has waited for it yet

    /// The session of the topmost process above it that is a child of this program. Orphans keep the session of
    /// their job, so it stands for the job.
    pid_t iJob = 0;
};

struct ProcessTable
{
    std::vector<ProcessEntry> vEntries;

    /// False if a parent had ended before it was read, so that some entries may be missing.
    bool bComplete = true;
};

/// The processes as they are at some moment of the call. Threads that call at once share one reading. Empty if the
/// system does not tell.
std::shared_ptr<ProcessTable const> ReadProcessTable();

} // namespace Processes
