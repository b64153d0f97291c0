#pragma once

#include "Runner.h"
#include "Style.h"

#include <string>

/// A table of how it went with each job.
std::string MakeSummary(JobPlan const & oPlan, std::vector<JobReport> const & vReports, Style const & oStyle);
