#pragma once

#include "Job.h"

#include <tessel/Result.h>

namespace tsl
{
class IniFile;
}

/// Reads the plan from an ini file:
///
///     [Runner]
///     ; Jobs at once; as many as there are processors if it is missing.
///     Parallel=4
///     ; In milliseconds.
///     RetryPause=500
///
///     [Job/name]
///     Command=program "an argument"
///     ; In milliseconds, for one attempt.
///     Timeout=60000
///     Retries=2
///     ; Separated by blanks.
///     After=other names
///     ; The exit code of success.
///     Expect=0
///     ; Words, also separated by blanks; JobFile.cpp has all of them.
///     Mode=Detached Quiet
///
/// Each error in the file is reported with its chapter and key: the failure, code 2, has the first error as its
/// text and all others in its history. The plan must not be used then.
tsl::Result ReadJobPlan(tsl::IniFile const & oFile, JobPlan & oPlan);
