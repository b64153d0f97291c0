#include "Runner.h"

#include "JobMachine.h"
#include "LogWatch.h"
#include "Processes.h"
#include "StopSignal.h"

#include <tessel/Exception.h>

#include <algorithm>

namespace
{

// A signal does not ring the bell.
constexpr std::chrono::milliseconds POLL_INTERVAL(50);

/// As many jobs as there are descriptors and processes for, whatever the plan says.
std::size_t GetParallel(JobPlan const & oPlan)
{
    constexpr int iForJob = 6;     // its process, three streams, and two to end their readers
    constexpr int iForOthers = 40; // starts of children, looks at processes, plug-ins
    constexpr int iProcesses = 8;  // three threads, and what a job may start itself
    int const iFitting = std::min(
        (Processes::GetFreeDescriptors() - iForOthers) / iForJob, Processes::GetFreeProcesses() / iProcesses);
    return static_cast<std::size_t>(std::clamp(iFitting, 1, oPlan.iParallel));
}

} // namespace

Runner::Runner(JobPlan const & oPlan, bool bFailFast)
    : m_oPlan(oPlan),
      m_bFailFast(bFailFast),
      m_iParallel(GetParallel(oPlan)),
      m_vEntries(oPlan.vJobs.size()),
      m_iLeft(oPlan.vJobs.size())
{
    JobMachine::RegisterTasks();
    for (std::size_t i = m_vEntries.size(); i-- > 0;)
    {
        m_vEntries[i].iOpen = oPlan.vJobs[i].vAfter.size();
        for (std::size_t const iOther : oPlan.vJobs[i].vAfter)
            m_vEntries[iOther].vFollowers.push_back(i);
        if (m_vEntries[i].iOpen == 0)
            m_vReady.push_back(i);
    }
}

Runner::~Runner()
{
    m_vEntries.clear();
    m_vOldContexts.clear();
    JobMachine::UnregisterTasks();
}

void Runner::Run(std::function<bool()> const & fLook)
{
    Processes::AdoptOrphans();
    while (m_iLeft > 0)
    {
        LookForSignals();
        StartJobs();
        m_oBell.Wait(POLL_INTERVAL);
        ReadStates();
        SkipFollowers();
        DropContexts();
        if (!fLook() && !m_bInterrupted)
            Interrupt();
    }
    if (StopSignal::HasCome())
        m_bInterrupted = true;
    if (m_bInterrupted)
        EndDaemons();
}

std::vector<JobReport> Runner::GetReports() const
{
    std::vector<JobReport> vReports;
    for (Entry const & oEntry : m_vEntries)
        vReports.push_back(oEntry.oReport);
    return vReports;
}

void Runner::LookForSignals()
{
    if (StopSignal::HasCome() && !m_bInterrupted)
        Interrupt();
    if (StopSignal::IsUrgent() && !m_bKilled)
    {
        m_bKilled = true;
        Cancel(JobCommandMessage(JobCommandMessage::eKill));
    }
}

void Runner::Interrupt()
{
    m_bInterrupted = true;
    Cancel(JobCommandMessage(JobCommandMessage::eCancel));
}

void Runner::Cancel(JobCommandMessage const & oCommand)
{
    m_bStopped = true;
    for (std::size_t const iJob : m_vRunning)
        m_vEntries[iJob].pContext->WriteMessage(oCommand);
    SkipAll(oCommand.GetReason().IsEmpty() ? "interrupted" : oCommand.GetReason().s_str());
}

void Runner::StartJobs()
{
    while (!m_bStopped && !m_vReady.empty() && m_vRunning.size() < m_iParallel)
    {
        if (!StartJob(m_vReady.back()))
            return;
        m_vReady.pop_back();
    }
}

/// False if there is no thread for it and others run, whose ends can be waited for.
bool Runner::StartJob(std::size_t iJob)
{
    Entry & oEntry = m_vEntries[iJob];
    oEntry.pContext =
        std::make_unique<JobContext>(m_oPlan.vJobs[iJob], m_oPlan.iRetryPause, m_oRoom, m_oBell);
    oEntry.oRunTime.Start();
    try
    {
        oEntry.pContext->Process();
    }
    catch (tsl::Exception const & oException)
    {
        oEntry.pContext.reset();
        // No more than run now, so that it is not tried again and again.
        m_iParallel = std::max<std::size_t>(m_vRunning.size(), 1);
        if (!m_vRunning.empty())
            return false;
        Note(iJob, JobStateMessage(m_oPlan.vJobs[iJob].sName, JobState::eFailed, 0, oException.GetText()));
        return true;
    }
    m_vRunning.push_back(iJob);
    return true;
}

void Runner::SkipAll(tsl::String const & sReason)
{
    m_vReady.clear();
    for (std::size_t i = 0; i < m_vEntries.size(); ++i)
        if (m_vEntries[i].oReport.eState == JobState::eWaiting && !m_vEntries[i].pContext)
            Skip(i, sReason);
}

/// One after the other, since a chain may be long.
void Runner::SkipFollowers()
{
    while (!m_vFailed.empty())
    {
        std::size_t const iJob = m_vFailed.back();
        m_vFailed.pop_back();
        for (std::size_t const iFollower : m_vEntries[iJob].vFollowers)
            if (m_vEntries[iFollower].oReport.eState == JobState::eWaiting)
                Skip(iFollower, tsl::String("needs ") + m_oPlan.vJobs[iJob].sName);
    }
}

/// The thread of a job is about to end when its last message comes. It is not killed meanwhile.
void Runner::DropContexts()
{
    constexpr std::chrono::seconds iPatience(1);
    while (!m_vOldContexts.empty()
           && m_vOldContexts.front().first + iPatience < std::chrono::steady_clock::now())
        m_vOldContexts.pop_front();
}

void Runner::ReadStates()
{
    // Jobs that end leave the list meanwhile.
    std::vector<std::size_t> const vRunning = m_vRunning;
    for (std::size_t const iJob : vRunning)
        ReadStates(iJob);
}

void Runner::ReadStates(std::size_t iJob)
{
    while (m_vEntries[iJob].pContext)
    {
        std::unique_ptr<tsl::Message> const pMessage(m_vEntries[iJob].pContext->ReadMessage());
        if (!pMessage)
            break;
        if (auto const * const pState = dynamic_cast<JobStateMessage const *>(pMessage.get()))
            Note(iJob, *pState);
    }
}

void Runner::Note(std::size_t iJob, JobStateMessage const & oMessage)
{
    Entry & oEntry = m_vEntries[iJob];
    JobReport & oReport = oEntry.oReport;
    oReport.eState = oMessage.GetState();
    oReport.iAttempts = oMessage.GetAttempts();
    oReport.sReason = oMessage.GetReason().s_str();
    if (IsEnd(oReport.eState) && oReport.iAttempts > 0)
    {
        oEntry.oRunTime.Stop();
        oReport.iDuration = oEntry.oRunTime.GetDuration();
    }
    JobStateMessage oTold = oMessage;
    oTold.SetDuration(static_cast<int>(oReport.iDuration));
    LogWatch::Dispatch(oTold);
    if (IsEnd(oReport.eState))
        End(iJob);
}

void Runner::End(std::size_t iJob)
{
    Entry & oEntry = m_vEntries[iJob];
    if (oEntry.pContext)
        m_vOldContexts.emplace_back(std::chrono::steady_clock::now(), std::move(oEntry.pContext));
    std::erase(m_vRunning, iJob);
    --m_iLeft;
    if (oEntry.oReport.eState == JobState::eDone)
    {
        for (std::size_t const iFollower : oEntry.vFollowers)
            if (--m_vEntries[iFollower].iOpen == 0 && !m_bStopped)
                m_vReady.push_back(iFollower);
        return;
    }

    m_vFailed.push_back(iJob);
    if (m_bFailFast && !m_bStopped)
        Cancel(JobCommandMessage(JobCommandMessage::eCancel,
            tsl::String("stopped after '") + m_oPlan.vJobs[iJob].sName + "' has failed"));
}

void Runner::Skip(std::size_t iJob, tsl::String const & sReason)
{
    Note(iJob, JobStateMessage(m_oPlan.vJobs[iJob].sName, JobState::eSkipped, 0, sReason));
}

/// What jobs that have ended before have left behind. Those that were ended now have left nothing.
void Runner::EndDaemons()
{
    constexpr std::chrono::milliseconds iPatience(5000);
    constexpr std::chrono::milliseconds iPause(10);
    int iGrace = 0;
    for (Job const & oJob : m_oPlan.vJobs)
        iGrace = std::max(iGrace, oJob.iGrace);

    auto const oBegin = std::chrono::steady_clock::now();
    auto const oKill = oBegin + std::chrono::milliseconds(iGrace);
    bool bLeft = Processes::EndAll(Processes::Force::eAsk);
    while (bLeft && std::chrono::steady_clock::now() < oKill + iPatience)
    {
        m_oBell.Wait(iPause);
        bool const bKill = StopSignal::IsUrgent() || std::chrono::steady_clock::now() >= oKill;
        bLeft = Processes::EndAll(bKill ? Processes::Force::eKill : Processes::Force::eNone);
    }
}
