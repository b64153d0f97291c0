#include "JobFile.h"

#include "JobOrder.h"

#include <tessel/CmdLine.h>
#include <tessel/IniFile.h>
#include <tessel/Support.h>

#include <algorithm>
#include <climits>
#include <thread>

namespace
{

constexpr char JOB_PREFIX[] = "Job/";

struct ModeWord
{
    char const * sWord;
    int iBit;
};

// The words of "Mode". The output of a job is read unless its mode is Quiet.
constexpr ModeWord MODE_WORDS[] = {
    {"NoWindow", tsl::CmdLine::eModeNoWindow},
    {"NewConsole", tsl::CmdLine::eModeNewConsole},
    {"Detached", tsl::CmdLine::eModeDetached},
    {"Quiet", 0},
};
constexpr int TAKE_OUTPUT = tsl::CmdLine::eModeRedirect | tsl::CmdLine::eModeReaderThreads;

std::vector<tsl::String> SplitWords(tsl::String const & sText)
{
    std::vector<tsl::String> vWords;
    tsl::Support::StringSplitter(sText, vWords, ' ',
        tsl::Support::eSplitTrimLeft | tsl::Support::eSplitTrimRight | tsl::Support::eSplitSkipEmpty, '\\');
    return vWords;
}

class Reader
{
public:
    Reader(tsl::IniFile const & oFile, JobPlan & oPlan) : m_oFile(oFile), m_oPlan(oPlan) {}

    tsl::Result Read()
    {
        ReadRunner();
        ReadJobs();
        ReadPrerequisites();
        if (m_vProblems.empty() && m_oPlan.vJobs.empty())
            m_vProblems.push_back(
                m_oFile.GetFileName() + " has no chapter [Job/name], so there is nothing to run.");
        if (m_vProblems.empty())
            RefuseCycle();
        return MakeFailure();
    }

private:
    void ReadRunner()
    {
        tsl::String const sChapter("Runner");
        m_oPlan.iParallel = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
        if (!HasChapter(sChapter))
            return;
        RefuseUnknownKeys(sChapter, {"Parallel", "RetryPause"});
        ReadNumber(sChapter, "Parallel", 1, 1000, m_oPlan.iParallel);
        ReadNumber(sChapter, "RetryPause", 0, INT_MAX, m_oPlan.iRetryPause);
    }

    void ReadJobs()
    {
        std::vector<tsl::String> vChapters;
        m_oFile.GetChapters(vChapters);
        for (tsl::String const & sChapter : vChapters)
            if (sChapter.Find(JOB_PREFIX) == 0)
                m_oPlan.vJobs.push_back(ReadJob(sChapter));
    }

    Job ReadJob(tsl::String const & sChapter)
    {
        RefuseUnknownKeys(sChapter, {"Command", "Timeout", "Retries", "After", "Expect", "Mode"});

        Job oJob;
        oJob.sName = sChapter.Mid(sizeof JOB_PREFIX - 1);
        if (oJob.sName.IsEmpty())
            AddProblem(sChapter, "", "A job needs a name.");
        if (!m_oFile.GetString(sChapter, "Command", oJob.sCommand) || oJob.sCommand.IsEmpty())
            AddProblem(sChapter, "Command", "A job needs a command.");
        ReadNumber(sChapter, "Timeout", 0, INT_MAX, oJob.iTimeout);
        ReadNumber(sChapter, "Retries", 0, INT_MAX, oJob.iRetries);
        ReadNumber(sChapter, "Expect", 0, 255, oJob.iExpectedExitCode);
        oJob.iMode = ReadMode(sChapter);
        return oJob;
    }

    int ReadMode(tsl::String const & sChapter)
    {
        int iMode = TAKE_OUTPUT;
        for (tsl::String const & sWord : ReadWords(sChapter, "Mode"))
        {
            auto const pWord = std::find_if(std::begin(MODE_WORDS), std::end(MODE_WORDS),
                [&](ModeWord const & oWord) { return sWord == oWord.sWord; });
            if (pWord == std::end(MODE_WORDS))
                AddProblem(sChapter, "Mode", tsl::String("There is no mode '") + sWord + "'.");
            else if (pWord->iBit == 0)
                iMode &= ~TAKE_OUTPUT;
            else
                iMode |= pWord->iBit;
        }
        return iMode;
    }

    void ReadPrerequisites()
    {
        for (Job & oJob : m_oPlan.vJobs)
        {
            tsl::String const sChapter = tsl::String(JOB_PREFIX) + oJob.sName;
            for (tsl::String const & sName : ReadWords(sChapter, "After"))
            {
                // Jobs are sorted by chapter, and so by name.
                auto const pOther = std::lower_bound(m_oPlan.vJobs.begin(), m_oPlan.vJobs.end(), sName,
                    [](Job const & oOther, tsl::String const & s)
                    { return oOther.sName.s_str() < s.s_str(); });
                if (pOther == m_oPlan.vJobs.end() || pOther->sName != sName)
                    AddProblem(sChapter, "After", tsl::String("There is no job '") + sName + "'.");
                else
                    oJob.vAfter.push_back(static_cast<std::size_t>(pOther - m_oPlan.vJobs.begin()));
            }
        }
    }

    void RefuseCycle()
    {
        std::vector<std::size_t> const vCycle = FindCycle(m_oPlan);
        if (vCycle.empty())
            return;

        tsl::String sPath = m_oPlan.vJobs[vCycle.front()].sName;
        for (std::size_t i = 1; i < vCycle.size(); ++i)
            sPath << " after " << m_oPlan.vJobs[vCycle[i]].sName;
        AddProblem(tsl::String(JOB_PREFIX) + m_oPlan.vJobs[vCycle.front()].sName, "After",
            tsl::String("The job would wait for itself: ") + sPath + ".");
    }

    bool HasChapter(tsl::String const & sChapter) const
    {
        std::vector<tsl::String> vKeys;
        return m_oFile.GetKeys(sChapter, vKeys).IsOk();
    }

    void RefuseUnknownKeys(tsl::String const & sChapter, std::vector<char const *> const & vKnown)
    {
        std::vector<tsl::String> vKeys;
        static_cast<void>(m_oFile.GetKeys(sChapter, vKeys)); // The chapter is there.
        for (tsl::String const & sKey : vKeys)
            if (std::find(vKnown.begin(), vKnown.end(), sKey.s_str()) == vKnown.end())
                AddProblem(sChapter, sKey, "This key is not known here.");
    }

    /// Does not change the value if the key is missing.
    void ReadNumber(tsl::String const & sChapter, char const * sKey, int iLowest, int iHighest, int & iValue)
    {
        tsl::String sText;
        if (!m_oFile.GetString(sChapter, sKey, sText))
            return;
        int iNumber = 0;
        if (m_oFile.GetInt32(sChapter, sKey, iNumber) && iNumber >= iLowest && iNumber <= iHighest)
            iValue = iNumber;
        else
            AddProblem(sChapter, sKey,
                tsl::String("'") + sText + "' is no whole number from " + iLowest + " to " + iHighest + ".");
    }

    std::vector<tsl::String> ReadWords(tsl::String const & sChapter, char const * sKey) const
    {
        tsl::String sText;
        static_cast<void>(m_oFile.GetString(sChapter, sKey, sText)); // A missing key gives no words.
        return SplitWords(sText);
    }

    void AddProblem(tsl::String const & sChapter, tsl::String const & sKey, tsl::String const & sText)
    {
        m_vProblems.push_back(
            tsl::String("[") + sChapter + "] " + sKey + (sKey.IsEmpty() ? "" : ": ") + sText);
    }

    tsl::Result MakeFailure() const
    {
        tsl::Result oResult;
        for (auto pProblem = m_vProblems.rbegin(); pProblem != m_vProblems.rend(); ++pProblem)
            oResult.InsertFront(tsl::MakeResult(tsl::ERR::eBadData, *pProblem, tsl::Result::eCategoryFault));
        return oResult;
    }

    tsl::IniFile const & m_oFile;
    JobPlan & m_oPlan;
    std::vector<tsl::String> m_vProblems;
};

} // namespace

tsl::Result ReadJobPlan(tsl::IniFile const & oFile, JobPlan & oPlan)
{
    return Reader(oFile, oPlan).Read();
}
