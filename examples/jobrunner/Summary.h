#pragma once

#include "Runner.h"

#include <iosfwd>

/// Writes a table of how it went with each job.
void WriteSummary(JobPlan const & oPlan, std::vector<JobReport> const & vReports, std::ostream & oStream);
