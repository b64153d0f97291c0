#pragma once

#include "Job.h"

#include <iosfwd>

/// The wave of each job: 1 for a job that waits for none, else one more than the latest wave of those that it waits
/// for. 0 for a job that is part of a cycle or waits for such a job.
std::vector<int> GetWaves(JobPlan const & oPlan);

/// A cycle: a job that waits for itself, the jobs between, and that job again. Empty if there is none.
std::vector<std::size_t> FindCycle(JobPlan const & oPlan);

/// Writes the jobs in the order in which they would start if there were no limit on how many run at once.
void WriteOrder(JobPlan const & oPlan, std::ostream & oStream);

/// Writes the graph of which job waits for which, in the language of Graphviz.
void WriteGraph(JobPlan const & oPlan, std::ostream & oStream);
