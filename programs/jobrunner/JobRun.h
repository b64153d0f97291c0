#pragma once

#include "../shared/Output.h"
#include "Job.h"
#include "Options.h"
#include "RunHistory.h"
#include "Style.h"

#include <tessel/Result.h>

#include <functional>

class Progress;
class Runner;

/// One run of the jobs of a plan: all that belongs to it, from the plug-ins to the summary.
class JobRun
{
public:
    /// Reports a failure that does not end the run.
    using Report = std::function<void(tsl::Result const &)>;

    /// All must outlive the object.
    JobRun(
        Options const & oOptions, JobPlan & oPlan, RunHistory & oHistory, Output & oOutput, Report fReport);

    /// Code 2 if the jobs cannot be run; nothing has been started then. Code 1 if a job has failed or the run was
    /// interrupted.
    tsl::Result Run();

private:
    tsl::Result Prepare();
    tsl::Result RunJobs();
    void LookAtLog(Progress & oProgress);
    void Finish(Progress & oProgress, Runner const & oRunner);
    static tsl::Result Judge(Runner const & oRunner);

    Options const & m_oOptions;
    JobPlan & m_oPlan;
    RunHistory & m_oHistory;
    Output & m_oOutput;
    Report m_fReport;
    Style m_oStyle = Style::Find();
    bool m_bLogLost = false;
};
