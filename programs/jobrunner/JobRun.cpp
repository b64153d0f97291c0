#include "JobRun.h"

#include "JobChecks.h"
#include "JobMessages.h"
#include "Launcher.h"
#include "LogWatch.h"
#include "PlugIns.h"
#include "Processes.h"
#include "Progress.h"
#include "Runner.h"
#include "StopSignal.h"
#include "Summary.h"
#include "TimeLeft.h"

#include <tessel/GlobalMessageDispatcher.h>
#include <tessel/IniFile.h>
#include <tessel/Support.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace
{

/// Orphans that have ended are looked for now and then.
class OrphanWatch
{
public:
    void ReapAtTimes()
    {
        constexpr std::chrono::seconds iInterval(1);
        auto const oNow = std::chrono::steady_clock::now();
        if (oNow < m_oLast + iInterval)
            return;
        m_oLast = oNow;
        Processes::ReapOrphans();
    }

private:
    std::chrono::steady_clock::time_point m_oLast = std::chrono::steady_clock::now();
};

std::vector<std::int64_t> GetTimes(JobPlan const & oPlan, RunHistory const & oHistory)
{
    std::vector<std::int64_t> vTimes;
    for (Job const & oJob : oPlan.vJobs)
        vTimes.push_back(oHistory.Get(oJob.sName).iDuration);
    return vTimes;
}

} // namespace

JobRun::JobRun(
    Options const & oOptions, JobPlan & oPlan, RunHistory & oHistory, Output & oOutput, Report fReport)
    : m_oOptions(oOptions),
      m_oPlan(oPlan),
      m_oHistory(oHistory),
      m_oOutput(oOutput),
      m_fReport(std::move(fReport))
{
}

tsl::Result JobRun::Run()
{
    if (tsl::Result oResult = Prepare(); oResult.IsError())
        return oResult;

    tsl::IniFile oFile;
    PlugIns oPlugIns;
    static_cast<void>(oFile.Open(m_oOptions.sFile)); // The plan was read from it.
    if (tsl::Result oResult = oPlugIns.Load(oFile); oResult.IsError())
        return oResult;
    return RunJobs();
}

tsl::Result JobRun::Prepare()
{
    if (tsl::Result oResult = CheckFirstJobs(m_oOptions.sFile, m_oPlan); oResult.IsError())
        return oResult;
    if (tsl::Result oResult = Launcher::Prepare(m_oPlan); oResult.IsError())
        return tsl::MakeResult(tsl::ERR::eBadData, "The jobs cannot be run.", oResult);
    return tsl::Result();
}

tsl::Result JobRun::RunJobs()
{
    TimeLeft const oTimeLeft(m_oPlan, GetTimes(m_oPlan, m_oHistory));
    Progress oProgress(m_oPlan, oTimeLeft, m_oStyle, m_oOutput);
    auto const iState = JobStateMessage::GetStaticClassDesc().GetClassId();
    auto const iLine = JobLineMessage::GetStaticClassDesc().GetClassId();
    tsl::Result oResult = tsl::Support::GetAppDisp().Register(oProgress, {iState, iLine});
    oResult.InsertFront(tsl::Support::GetAppDisp().Register(m_oHistory, {iState}));
    if (oResult.IsError())
        return oResult;

    m_oHistory.Begin(m_oPlan);
    LogWatch::Begin();
    StopSignal::Watch();
    Runner oRunner(m_oPlan, m_oOptions.bFailFast);
    OrphanWatch oOrphans;
    oRunner.Run(
        [&]
        {
            LookAtLog(oProgress);
            oProgress.DrawAtTimes();
            m_oHistory.SaveAtTimes();
            oOrphans.ReapAtTimes();
            return !oProgress.IsUnread();
        });
    LookAtLog(oProgress);
    Finish(oProgress, oRunner);
    return Judge(oRunner);
}

void JobRun::LookAtLog(Progress & oProgress)
{
    if (m_bLogLost || !LogWatch::IsLost())
        return;
    m_bLogLost = true;
    oProgress.End();
    m_fReport(tsl::MakeResult(tsl::ERR::eAccessDenied,
        "Logfile.txt cannot be written, so what the jobs write is lost. The disk may be full, or the folder "
        "read-only."));
}

void JobRun::Finish(Progress & oProgress, Runner const & oRunner)
{
    oProgress.End();
    std::vector<JobReport> const vReports = oRunner.GetReports();
    for (std::size_t i = 0; i < vReports.size(); ++i)
        if (std::string const sLines = oProgress.GetLastLines(i);
            vReports[i].eState == JobState::eFailed && !sLines.empty())
            m_oOutput.Write(
                "The last lines of " + m_oPlan.vJobs[i].sName.s_str() + ":\n" + sLines + m_oStyle.GetReset());
    m_oOutput.Write(MakeSummary(m_oPlan, vReports, m_oStyle));
    m_oOutput.Flush();

    if (tsl::Result const oResult = m_oHistory.Save(); oResult.IsError())
        m_fReport(oResult);
    if (m_bLogLost)
        m_fReport(tsl::MakeResult(
            tsl::ERR::eAccessDenied, "Logfile.txt could not be written; it does not have all of this run."));
}

tsl::Result JobRun::Judge(Runner const & oRunner)
{
    std::vector<JobReport> const vReports = oRunner.GetReports();
    auto const iFailed = static_cast<int>(std::count_if(vReports.begin(), vReports.end(),
        [](JobReport const & oReport) { return oReport.eState == JobState::eFailed; }));
    if (iFailed == 0 && !oRunner.IsInterrupted())
        return tsl::Result();
    tsl::String sText(oRunner.IsInterrupted() ? "Interrupted. " : "");
    sText << iFailed << " of " << static_cast<int>(vReports.size()) << " jobs failed.";
    return tsl::MakeResult(tsl::ERR::eAccessDenied, sText);
}
