#include "RunHistory.h"

#include "../shared/System.h"
#include "JobMessages.h"

#include <tessel/GlobalMessageDispatcher.h>
#include <tessel/IniFile.h>
#include <tessel/OS.h>
#include <tessel/Support.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace
{

constexpr char JOB_PREFIX[] = "Job/";
constexpr char DONE[] = "done";

} // namespace

RunHistory::RunHistory(tsl::String const & sIniFile)
    : m_sFile(std::filesystem::absolute(sIniFile.s_str() + ".state").string())
{
    tsl::IniFile oFile;
    static_cast<void>(oFile.Open(m_sFile.c_str()));
    if (!oFile.IsOpen())
        return;
    std::vector<tsl::String> vChapters;
    oFile.GetChapters(vChapters);
    for (tsl::String const & sChapter : vChapters)
    {
        tsl::String sState;
        Past & oPast =
            m_oJobs[sChapter.s_str().substr(std::min(sizeof JOB_PREFIX - 1, sChapter.s_str().size()))];
        oPast.bDone = oFile.GetString(sChapter, "State", sState) && sState == DONE;
        static_cast<void>(oFile.GetInt32(sChapter, "Duration", oPast.iDuration)); // It may be unknown.
    }
}

RunHistory::~RunHistory()
{
    tsl::Support::GetAppDisp().Unregister(*this);
}

RunHistory::Past RunHistory::Get(tsl::String const & sJob) const
{
    auto const oFound = m_oJobs.find(sJob.s_str());
    return oFound == m_oJobs.end() ? Past() : oFound->second;
}

void RunHistory::Begin(JobPlan const & oPlan)
{
    for (Job const & oJob : oPlan.vJobs)
        m_oJobs[oJob.sName.s_str()].bDone = false;
    m_bChanged = true;
}

void RunHistory::Process(tsl::Message const & oMessage, tsl::Result &) const
{
    auto const * const pState = dynamic_cast<JobStateMessage const *>(&oMessage);
    if (!pState || pState->GetState() != JobState::eDone)
        return;
    std::lock_guard const oScope(m_oLock);
    m_oJobs[pState->GetJob().s_str()] = {true, pState->GetDuration()};
    m_bChanged = true;
}

void RunHistory::SaveAtTimes()
{
    constexpr std::chrono::seconds iInterval(1);
    if (std::chrono::steady_clock::now() >= m_oLastSaving + iInterval)
        static_cast<void>(Save()); // The last one is reported.
}

tsl::Result RunHistory::Save()
{
    std::ostringstream oContent;
    {
        std::lock_guard const oScope(m_oLock);
        if (!m_bChanged)
            return tsl::Result();
        oContent << "; How it went with the jobs the last time, for --resume and the time that is left.\n";
        for (auto const & [sJob, oPast] : m_oJobs)
            oContent << '[' << JOB_PREFIX << sJob << "]\nState=" << (oPast.bDone ? DONE : "open")
                     << "\nDuration=" << oPast.iDuration << '\n';
        m_bChanged = false;
    }

    m_oLastSaving = std::chrono::steady_clock::now();
    std::ofstream(m_sFile, std::ios::app).flush(); // There has to be one that can be replaced.
    std::filesystem::path oNew;
    int iError = System::WriteBeside(m_sFile, oContent.str(), oNew);
    if (iError == 0)
        iError = System::ReplaceFile(m_sFile, oNew);
    if (iError == 0)
        return tsl::Result();
    std::error_code oIgnored; // There may be no new file.
    std::filesystem::remove(oNew, oIgnored);
    m_bChanged = true;
    return tsl::MakeResult(tsl::ERR::eAccessDenied,
        tsl::String("The file '") + m_sFile.c_str()
            + "' cannot be written, so --resume will not know of this run.",
        tsl::OS::FormatError(iError));
}
