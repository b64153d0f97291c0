#pragma once

#include "Job.h"

#include <tessel/Result.h>

/// The first process of a job is this program once more. It gives the job its folder, its environment and its
/// standard input, which tsl::CmdLine cannot, and becomes the job's program then.
namespace Launcher
{

/// Writes what the launchers of all jobs need into a file in memory, which lasts as long as the program, and sets the
/// command line of each job's launcher.
tsl::Result Prepare(JobPlan & oPlan);

/// Whether the program was started as a launcher.
bool IsAskedFor(int iCount, char ** pArguments);

/// Becomes the job's program. Returns an exit code only if that fails, after it has told why on the standard error
/// stream.
int Run(char ** pArguments);

} // namespace Launcher
