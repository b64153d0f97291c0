#include "JobFile.h"

#include "../shared/NearestName.h"
#include "CommandWords.h"
#include "FileProblems.h"
#include "JobOrder.h"

#include <tessel/IniFile.h>
#include <tessel/Support.h>
#include <tessel/ValueString.h>

#include <algorithm>
#include <climits>
#include <thread>

namespace
{

constexpr char JOB_PREFIX[] = "Job/";
constexpr char VARIABLE_PREFIX[] = "Env/";

// As the chapters and keys of --help.
constexpr char const * CHAPTERS[] = {"Runner", "Plugins", "Debug", "Debug/Switch"};
constexpr char const * RUNNER_KEYS[] = {"Parallel", "RetryPause", "Grace"};
constexpr char const * JOB_KEYS[] = {
    "Command", "Shell", "After", "Timeout", "Grace", "Retries", "Expect", "Folder", "Stdin", "Mode"};

// A job has a session of its own and no window in any case.
constexpr char const * MODES[] = {"Quiet", "Detached", "NoWindow", "NewConsole"};

std::vector<tsl::String> SplitWords(tsl::String const & sText)
{
    std::vector<tsl::String> vWords;
    tsl::Support::StringSplitter(sText, vWords, ' ',
        tsl::Support::eSplitTrimLeft | tsl::Support::eSplitTrimRight | tsl::Support::eSplitSkipEmpty, '\\');
    return vWords;
}

template<std::size_t COUNT>
std::vector<std::string> GetNames(char const * const (&aNames)[COUNT])
{
    return {std::begin(aNames), std::end(aNames)};
}

bool Contains(std::vector<std::string> const & vNames, tsl::String const & sName)
{
    return std::find(vNames.begin(), vNames.end(), sName.s_str()) != vNames.end();
}

class Reader
{
public:
    Reader(tsl::String const & sFile, tsl::IniFile const & oFile, JobPlan & oPlan)
        : m_oFile(oFile), m_oPlan(oPlan), m_oProblems(sFile)
    {
    }

    tsl::Result Read()
    {
        RefuseUnknownChapters();
        ReadRunner();
        ReadJobs();
        ReadPrerequisites();
        if (m_oProblems.IsEmpty())
            RefuseCycle();
        return m_oProblems.GetFailure();
    }

private:
    void RefuseUnknownChapters()
    {
        // A plug-in may have a chapter of its own.
        std::vector<std::string> vKnown = GetNames(CHAPTERS);
        for (tsl::String const & sPlugIn : GetKeys("Plugins"))
            vKnown.push_back(sPlugIn.s_str());
        for (tsl::String const & sChapter : GetChapters())
            if (sChapter.Find(JOB_PREFIX) != 0 && !Contains(vKnown, sChapter))
                m_oProblems.Add(sChapter, "", "This chapter is not known." + AskForChapter(sChapter, vKnown));
    }

    static std::string AskForChapter(tsl::String const & sChapter, std::vector<std::string> const & vKnown)
    {
        // "Jobs/x" is near to "Job/x", whatever x is.
        std::size_t const iSlash = sChapter.s_str().find('/');
        if (iSlash != std::string::npos
            && GetNearestName(sChapter.s_str().substr(0, iSlash + 1), {JOB_PREFIX}) == JOB_PREFIX)
            return " Did you mean '" + (JOB_PREFIX + sChapter.s_str().substr(iSlash + 1)) + "'?";
        std::string const sQuestion = AskForNearest(sChapter.s_str(), vKnown);
        return sQuestion.empty() ? " A job has a chapter such as [Job/" + sChapter.s_str() + "]." : sQuestion;
    }

    void ReadRunner()
    {
        tsl::String const sChapter("Runner");
        m_oPlan.iParallel = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
        RefuseUnknownKeys(sChapter, GetNames(RUNNER_KEYS));
        ReadNumber(sChapter, "Parallel", 1, 10000, m_oPlan.iParallel);
        ReadNumber(sChapter, "RetryPause", 0, INT_MAX, m_oPlan.iRetryPause);
        ReadNumber(sChapter, "Grace", 0, INT_MAX, m_iGrace);
    }

    void ReadJobs()
    {
        for (tsl::String const & sChapter : GetChapters())
            if (sChapter.Find(JOB_PREFIX) == 0)
                m_oPlan.vJobs.push_back(ReadJob(sChapter));
        if (m_oProblems.IsEmpty() && m_oPlan.vJobs.empty())
            m_oProblems.Add("Job/name", "", "There is no such chapter, so there is nothing to run.");
    }

    Job ReadJob(tsl::String const & sChapter)
    {
        RefuseUnknownKeys(sChapter, GetNames(JOB_KEYS));

        Job oJob;
        oJob.sName = sChapter.Mid(sizeof JOB_PREFIX - 1);
        if (oJob.sName.IsEmpty())
            m_oProblems.Add(sChapter, "", "A job needs a name, as in [Job/name].");
        oJob.iGrace = m_iGrace;
        ReadNumber(sChapter, "Timeout", 0, INT_MAX, oJob.iTimeout);
        ReadNumber(sChapter, "Grace", 0, INT_MAX, oJob.iGrace);
        ReadNumber(sChapter, "Retries", 0, INT_MAX, oJob.iRetries);
        ReadNumber(sChapter, "Expect", 0, 255, oJob.iExpectedExitCode);
        oJob.bShell = ReadYesOrNo(sChapter, "Shell");
        oJob.bQuiet = ReadMode(sChapter);
        oJob.sFolder = GetText(sChapter, "Folder").s_str();
        oJob.sStdin = GetText(sChapter, "Stdin").s_str();
        oJob.sCommand = ReadCommand(sChapter, oJob.bShell);
        oJob.vEnvironment = ReadVariables(sChapter);
        return oJob;
    }

    tsl::String ReadCommand(tsl::String const & sChapter, bool bShell)
    {
        constexpr unsigned int iLengthMax = 64 * 1024;
        tsl::String const sCommand = GetText(sChapter, "Command");
        if (sCommand.IsEmpty())
            m_oProblems.Add(
                sChapter, "Command", "A job needs a command, as in 'Command=program \"an argument\"'.");
        if (sCommand.GetLength() > iLengthMax)
            m_oProblems.Add(
                sChapter, "Command", "The command has more than " + std::to_string(iLengthMax) + " bytes.");
        if (std::string const sWord = bShell ? "" : FindShellWord(sCommand.s_str()); !sWord.empty())
            m_oProblems.Add(sChapter, "Command",
                "'" + sWord
                    + "' is for a shell, and none takes part. Shell=yes runs the command by one; in "
                      "double quotes it is part of an argument.");
        return sCommand;
    }

    bool ReadYesOrNo(tsl::String const & sChapter, char const * sKey)
    {
        tsl::String const sText = GetText(sChapter, sKey);
        if (!sText.IsEmpty() && sText != "yes" && sText != "no")
            m_oProblems.Add(sChapter, sKey, "'" + sText.s_str() + "' is neither 'yes' nor 'no'.");
        return sText == "yes";
    }

    /// Whether the job is quiet, the one mode that means anything.
    bool ReadMode(tsl::String const & sChapter)
    {
        std::vector<std::string> const vKnown = GetNames(MODES);
        bool bQuiet = false;
        for (tsl::String const & sWord : ReadWords(sChapter, "Mode"))
        {
            bQuiet = bQuiet || sWord == MODES[0];
            if (!Contains(vKnown, sWord))
                m_oProblems.Add(sChapter, "Mode",
                    "There is no mode '" + sWord.s_str() + "'." + AskForNearest(sWord.s_str(), vKnown));
        }
        return bQuiet;
    }

    std::vector<std::string> ReadVariables(tsl::String const & sChapter) const
    {
        std::vector<std::string> vVariables;
        for (tsl::String const & sKey : GetKeys(sChapter))
            if (IsVariable(sKey))
                vVariables.push_back(sKey.s_str().substr(sizeof VARIABLE_PREFIX - 1) + '='
                                     + GetText(sChapter, sKey.c_str()).s_str());
        return vVariables;
    }

    static bool IsVariable(tsl::String const & sKey)
    {
        constexpr std::size_t iPrefix = sizeof VARIABLE_PREFIX - 1;
        return sKey.Find(VARIABLE_PREFIX) == 0 && sKey.GetLength() > iPrefix
               && sKey.s_str().find('/', iPrefix) == std::string::npos;
    }

    void ReadPrerequisites()
    {
        for (Job & oJob : m_oPlan.vJobs)
        {
            tsl::String const sChapter = tsl::String(JOB_PREFIX) + oJob.sName;
            for (tsl::String const & sName : ReadWords(sChapter, "After"))
                if (std::size_t iOther = 0; FindJob(m_oPlan, sName, iOther))
                    oJob.vAfter.push_back(iOther);
                else
                    m_oProblems.Add(sChapter, "After",
                        "There is no job '" + sName.s_str() + "'." + AskForJob(m_oPlan, sName));
            // One that is named twice is waited for once.
            std::sort(oJob.vAfter.begin(), oJob.vAfter.end());
            oJob.vAfter.erase(std::unique(oJob.vAfter.begin(), oJob.vAfter.end()), oJob.vAfter.end());
        }
    }

    void RefuseCycle()
    {
        std::vector<std::size_t> const vCycle = FindCycle(m_oPlan);
        if (vCycle.empty())
            return;

        std::string sPath = m_oPlan.vJobs[vCycle.front()].sName.s_str();
        for (std::size_t i = 1; i < vCycle.size(); ++i)
            sPath += " after " + m_oPlan.vJobs[vCycle[i]].sName.s_str();
        m_oProblems.Add(tsl::String(JOB_PREFIX) + m_oPlan.vJobs[vCycle.front()].sName, "After",
            "The job would wait for itself: " + sPath + ". One of them has to go without the other.");
    }

    void RefuseUnknownKeys(tsl::String const & sChapter, std::vector<std::string> const & vKnown)
    {
        for (tsl::String const & sKey : GetKeys(sChapter))
            if (!Contains(vKnown, sKey) && (sChapter.Find(JOB_PREFIX) != 0 || !IsVariable(sKey)))
                m_oProblems.Add(
                    sChapter, sKey, "This key is not known here." + AskForNearest(sKey.s_str(), vKnown));
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
            m_oProblems.Add(sChapter, sKey,
                "'" + sText.s_str() + "' is no whole number from " + std::to_string(iLowest) + " to "
                    + std::to_string(iHighest) + '.');
    }

    std::vector<tsl::String> ReadWords(tsl::String const & sChapter, char const * sKey) const
    {
        return SplitWords(GetText(sChapter, sKey));
    }

    /// Empty if the key is missing.
    tsl::String GetText(tsl::String const & sChapter, char const * sKey) const
    {
        tsl::String sText;
        static_cast<void>(m_oFile.GetString(sChapter, sKey, sText));
        return sText;
    }

    std::vector<tsl::String> GetChapters() const
    {
        std::vector<tsl::String> vChapters;
        m_oFile.GetChapters(vChapters);
        return vChapters;
    }

    /// None if the chapter is missing.
    std::vector<tsl::String> GetKeys(tsl::String const & sChapter) const
    {
        std::vector<tsl::String> vKeys;
        static_cast<void>(m_oFile.GetKeys(sChapter, vKeys));
        return vKeys;
    }

    tsl::IniFile const & m_oFile;
    JobPlan & m_oPlan;
    FileProblems m_oProblems;
    int m_iGrace = Job().iGrace;
};

} // namespace

tsl::Result ReadJobPlan(tsl::String const & sFile, JobPlan & oPlan)
{
    // A line that is too long may be an error of the file as well, and explains it.
    if (tsl::Result oLongLine = FileProblems(sFile).GetFailure(); oLongLine.IsError())
        return oLongLine;
    tsl::IniFile oFile;
    if (tsl::Result const oResult = oFile.Open(sFile); oResult.IsError())
        return tsl::MakeResult(tsl::ERR::eBadData,
            oFile.IsOpen() ? tsl::String("The jobs are not known; 'tessel ini ") + sFile + "' says more."
                           : tsl::String("The jobs are not known; --file names another file."),
            oResult);
    return Reader(sFile, oFile, oPlan).Read();
}
