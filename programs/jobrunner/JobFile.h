#pragma once

#include "Job.h"

#include <tessel/Result.h>

/// Reads the plan from an ini file, as --help describes it.
///
/// Whatever is wrong in the file is told with its line, chapter and key: the failure, code 2, has the first
/// problem as its text and all others in its history. The plan is of no use then.
tsl::Result ReadJobPlan(tsl::String const & sFile, JobPlan & oPlan);
