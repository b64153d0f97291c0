#pragma once

#include "Job.h"

#include <tessel/String.h>

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

/// Finds a job by its name, in a plan whose jobs are in the order of their names.
bool FindJob(JobPlan const & oPlan, tsl::String const & sName, std::size_t & iJob);

/// A question for the end of a message, such as " Did you mean 'lint'?"; empty if no name is close.
std::string AskForJob(JobPlan const & oPlan, tsl::String const & sName);

/// For each job whether it is one of the given ones or needed by one of them, however far.
std::vector<bool> FindNeeded(JobPlan const & oPlan, std::vector<std::size_t> vJobs);

/// Leaves out all other jobs. Nobody waits for them any more.
void KeepJobs(JobPlan & oPlan, std::vector<bool> const & vKeep);

/// The wave of each job: 1 for a job that waits for none, else one more than the latest wave of those that it waits
/// for. 0 for a job that is part of a cycle or waits for such a job.
std::vector<int> GetWaves(JobPlan const & oPlan);

/// A cycle: a job that waits for itself, the jobs between, and that job again. Empty if there is none.
std::vector<std::size_t> FindCycle(JobPlan const & oPlan);

void WriteNames(JobPlan const & oPlan, std::ostream & oStream);

/// Writes the jobs in the order in which they would start if there were no limit on how many run at once.
void WriteOrder(JobPlan const & oPlan, std::ostream & oStream);

/// Writes the graph of which job waits for which, in the language of Graphviz.
void WriteGraph(JobPlan const & oPlan, std::ostream & oStream);

/// The same in the language of Mermaid.
void WriteMermaid(JobPlan const & oPlan, std::ostream & oStream);
