#pragma once

#include "Job.h"

#include <tessel/Result.h>

/// Whether the jobs that wait for no other one can be started: their folders, inputs and programs have to be there. What
/// other jobs need, an earlier job may make. A failure is like that of ReadJobPlan.
tsl::Result CheckFirstJobs(tsl::String const & sFile, JobPlan const & oPlan);
