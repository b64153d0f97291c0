#pragma once

#include "Job.h"

#include <iosfwd>

/// For each job the wave it belongs to: 1 for jobs that wait for none, else one more than the latest of
/// those it waits for. 0 for a job that is part of a cycle or waits for one that is.
std::vector<int> GetWaves(JobPlan const & oPlan);

/// A job that waits for itself, those over which it does so, and itself again; empty if there is none.
std::vector<std::size_t> FindCycle(JobPlan const & oPlan);

/// Writes the jobs in the order in which they would start if there were no limit on how many run at once.
void WriteOrder(JobPlan const & oPlan, std::ostream & oStream);

/// Writes who waits for whom, in the language of Graphviz.
void WriteGraph(JobPlan const & oPlan, std::ostream & oStream);
