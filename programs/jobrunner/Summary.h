#pragma once

#include "Runner.h"

#include <iosfwd>

/// Writes a table of the results of all jobs.
void WriteSummary(JobPlan const & oPlan, std::vector<JobReport> const & vReports, std::ostream & oStream);
