#include "Runner.h"

#include "JobMachine.h"
#include "StopSignal.h"

#include <tessel/Support.h>

#include <algorithm>

namespace
{

// A signal does not ring the bell.
constexpr std::chrono::milliseconds POLL_INTERVAL(50);

} // namespace

Runner::Runner(JobPlan const & oPlan) : m_oPlan(oPlan), m_vEntries(oPlan.vJobs.size())
{
    JobMachine::RegisterTasks();
}

Runner::~Runner()
{
    m_vEntries.clear();
    JobMachine::UnregisterTasks();
}

void Runner::Run()
{
    while (!IsDone())
    {
        if (StopSignal::HasCome() && !m_bInterrupted)
            Interrupt();
        CommandWaitingJobs();
        m_oBell.Wait(POLL_INTERVAL);
        ReadStates();
    }
}

std::vector<JobReport> Runner::GetReports() const
{
    std::vector<JobReport> vReports;
    for (Entry const & oEntry : m_vEntries)
        vReports.push_back(oEntry.oReport);
    return vReports;
}

bool Runner::IsDone() const
{
    return std::all_of(m_vEntries.begin(), m_vEntries.end(),
        [](Entry const & oEntry) { return IsEnd(oEntry.oReport.eState); });
}

void Runner::Interrupt()
{
    m_bInterrupted = true;
    for (Entry const & oEntry : m_vEntries)
        if (oEntry.pContext && !IsEnd(oEntry.oReport.eState))
            oEntry.pContext->WriteMessage(JobCommandMessage(JobCommandMessage::eCancel));
}

void Runner::CommandWaitingJobs()
{
    for (std::size_t i = 0; i < m_vEntries.size(); ++i)
        if (!m_vEntries[i].pContext)
            CommandWaitingJob(i);
}

void Runner::CommandWaitingJob(std::size_t iJob)
{
    if (m_bInterrupted)
        return Tell(iJob, JobCommandMessage(JobCommandMessage::eSkip, "interrupted"));

    for (std::size_t const iOther : m_oPlan.vJobs[iJob].vAfter)
    {
        JobState const eState = m_vEntries[iOther].oReport.eState;
        if (!IsEnd(eState))
            return;
        if (eState != JobState::eDone)
            return Tell(iJob, JobCommandMessage(JobCommandMessage::eSkip,
                                  tsl::String("needs ") + m_oPlan.vJobs[iOther].sName));
    }
    if (m_iRunning < m_oPlan.iParallel)
        Tell(iJob, JobCommandMessage(JobCommandMessage::eStart));
}

void Runner::Tell(std::size_t iJob, JobCommandMessage const & oCommand)
{
    Entry & oEntry = m_vEntries[iJob];
    oEntry.pContext = std::make_unique<JobContext>(m_oPlan.vJobs[iJob], m_oPlan.iRetryPause, m_oBell);
    oEntry.pContext->WriteMessage(oCommand);
    oEntry.oRunTime.Start();
    ++m_iRunning;
    oEntry.pContext->Process();
}

void Runner::ReadStates()
{
    for (Entry & oEntry : m_vEntries)
        while (oEntry.pContext)
        {
            std::unique_ptr<tsl::Message> const pMessage(oEntry.pContext->ReadMessage());
            if (!pMessage)
                break;
            if (auto const * const pState = dynamic_cast<JobStateMessage const *>(pMessage.get()))
                Note(oEntry, *pState);
        }
}

void Runner::Note(Entry & oEntry, JobStateMessage const & oMessage)
{
    JobReport & oReport = oEntry.oReport;
    oReport.eState = oMessage.GetState();
    oReport.iAttempts = oMessage.GetAttempts();
    oReport.sReason = oMessage.GetReason().s_str();
    if (IsEnd(oReport.eState))
    {
        --m_iRunning;
        oEntry.oRunTime.Stop();
        oReport.iDuration = oReport.iAttempts > 0 ? oEntry.oRunTime.GetDuration() : 0;
    }
    tsl::Support::DispatchMessage(oMessage);
}
