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
///     Parallel=4            ; jobs at once; as many as there are processors if it is missing
///     RetryPause=500        ; ms
///
///     [Job/name]
///     Command=program "an argument"
///     Timeout=60000         ; ms for one attempt
///     Retries=2
///     After=other names     ; separated by blanks
///     Expect=0              ; exit code
///     Mode=Detached Quiet   ; words, see JobFile.cpp
///
/// Whatever is wrong in the file is told with its chapter and key: the failure, code 2, has the first
/// problem as its text and all others in its history. The plan is of no use then.
tsl::Result ReadJobPlan(tsl::IniFile const & oFile, JobPlan & oPlan);
