#include "FailurePrinter.h"
#include "JobFile.h"
#include "JobMessages.h"
#include "JobOrder.h"
#include "PlugIns.h"
#include "Progress.h"
#include "Runner.h"
#include "StopSignal.h"
#include "Summary.h"

#include <tessel/Tessel.h>

#include <algorithm>
#include <iostream>

namespace
{

constexpr char HELP[] =
    "jobrunner runs the jobs that jobrunner.ini in the current directory describes.\n"
    "\n"
    "  jobrunner             run the jobs; the exit code is the number of those that failed, at most 100\n"
    "  jobrunner --dry-run   show the order in which they would start, in waves\n"
    "  jobrunner --dot       write the graph of who waits for whom, for Graphviz\n"
    "  jobrunner --help      show this text\n"
    "\n"
    "[Runner]\n"
    "Parallel=N     jobs at once; as many as there are processors if it is missing\n"
    "RetryPause=N   milliseconds between two attempts; 500 if it is missing\n"
    "\n"
    "[Job/name]     letters, digits, \"/\" and \"_\"\n"
    "Command=...    the program and its arguments; double quotes hold one with blanks together\n"
    "Timeout=N      milliseconds after which an attempt is ended; 0 for no limit\n"
    "Retries=N      further attempts after a failed one\n"
    "After=...      names of jobs that must have succeeded, separated by blanks\n"
    "Expect=N       the exit code of success; 0 if it is missing\n"
    "Mode=...       Detached: in a session of its own; Quiet: its output is not taken\n"
    "\n"
    "[Plugins]\n"
    "Processor=...  a library, without its ending, that registers the message processor of that name\n"
    "\n"
    "What the jobs write is in Logfile.txt.\n";

constexpr int FAILURES_MAX = 100;

class JobRunnerConfig : public tsl::ConsoleApplicationConfig
{
};

/// Runs the jobs of its ini file.
class JobRunner : public tsl::ConsoleApplication
{
public:
    JobRunner() : ConsoleApplication(new JobRunnerConfig) {}

    /// The printer is destroyed before the application's bus, so it must be unregistered.
    ~JobRunner() override { GetDispatcher().Unregister(m_oFailurePrinter); }

    static tsl::Application * Create() { return new JobRunner; }

protected:
    tsl::Result PreRun() override
    {
        tsl::Result oResult = ConsoleApplication::PreRun();
        if (oResult.IsError())
            return oResult;
        return GetDispatcher().Register(
            m_oFailurePrinter, {tsl::ResultMessage::GetStaticClassDesc().GetClassId()});
    }

    tsl::Result Run() override
    {
        m_oOutcome = DoWhatIsAsked();
        return m_oOutcome;
    }

    /// Returns the exit code. The failure of Run was printed before; this one is printed by nobody.
    tsl::Result PostRun() override
    {
        GetDispatcher().Unregister(m_oFailurePrinter);
        tsl::Result oResult = ConsoleApplication::PostRun();
        return m_oOutcome.IsError() ? m_oOutcome : oResult;
    }

private:
    enum class Action
    {
        eRun,
        eShowOrder,
        eShowGraph,
        eShowHelp
    };

    tsl::Result DoWhatIsAsked()
    {
        Action eAction = Action::eRun;
        if (tsl::Result oResult = ReadCommandLine(eAction); oResult.IsError())
            return oResult;
        if (eAction == Action::eShowHelp)
        {
            std::cout << HELP << std::flush;
            return tsl::Result();
        }

        tsl::IniFile oFile;
        if (tsl::Result oResult = oFile.Open(tsl::Support::GetAppIniFileName()); oResult.IsError())
            return oResult;
        JobPlan oPlan;
        if (tsl::Result oResult = ReadJobPlan(oFile, oPlan); oResult.IsError())
            return oResult;

        if (eAction == Action::eShowOrder)
            WriteOrder(oPlan, std::cout);
        else if (eAction == Action::eShowGraph)
            WriteGraph(oPlan, std::cout);
        else
            return RunJobs(oFile, oPlan);
        return tsl::Result();
    }

    tsl::Result ReadCommandLine(Action & eAction) const
    {
        tsl::CmdLineParser const & oParser = GetConfig().GetCmdLineParser();
        std::vector<tsl::String> vWords;
        oParser.GetOptions(vWords);
        for (tsl::String const & sOption : vWords)
            if (sOption == "help" || sOption == "h")
                eAction = Action::eShowHelp;
            else if (sOption == "dry-run")
                eAction = Action::eShowOrder;
            else if (sOption == "dot")
                eAction = Action::eShowGraph;
            else
                return RefuseArgument(sOption);

        oParser.GetParameters(vWords);
        tsl::String sValue;
        for (char const * const sOption : {"help", "h", "dry-run", "dot"})
            if (oParser.GetOption(sOption, sValue, tsl::CmdLineParser::eOptionAny) && !sValue.IsEmpty())
                vWords.push_back(sValue);
        return vWords.empty() ? tsl::Result() : RefuseArgument(vWords.front());
    }

    static tsl::Result RefuseArgument(tsl::String const & sArgument)
    {
        return tsl::MakeResult(tsl::ERR::eBadData,
            tsl::String("The argument '") + sArgument + "' is not known. --help tells which are.");
    }

    static tsl::Result RunJobs(tsl::IniFile const & oFile, JobPlan const & oPlan)
    {
        PlugIns oPlugIns;
        if (tsl::Result oResult = oPlugIns.Load(oFile); oResult.IsError())
            return oResult;

        Progress oProgress(oPlan.vJobs.size());
        tsl::Result oRegistered = tsl::Support::GetAppDisp().Register(
            oProgress, {JobStateMessage::GetStaticClassDesc().GetClassId()});
        if (oRegistered.IsError())
            return oRegistered;

        StopSignal::Watch();
        Runner oRunner(oPlan);
        oRunner.Run();

        oProgress.End();
        std::vector<JobReport> const vReports = oRunner.GetReports();
        WriteSummary(oPlan, vReports, std::cout);
        return CheckReports(vReports, oRunner.IsInterrupted());
    }

    static tsl::Result CheckReports(std::vector<JobReport> const & vReports, bool bInterrupted)
    {
        auto const iFailed = static_cast<int>(std::count_if(vReports.begin(), vReports.end(),
            [](JobReport const & oReport) { return oReport.eState == JobState::eFailed; }));
        if (iFailed == 0 && !bInterrupted)
            return tsl::Result();
        tsl::String sText(bInterrupted ? "Interrupted. " : "");
        sText << iFailed << " of " << static_cast<int>(vReports.size()) << " jobs failed.";
        return tsl::MakeResult(std::clamp(iFailed, 1, FAILURES_MAX), sText);
    }

    FailurePrinter m_oFailurePrinter;
    tsl::Result m_oOutcome;
};

} // namespace

int main(int iCount, char ** pArguments)
{
    // Without the program's own name: if it begins with a slash, it would be an option.
    tsl::ConsoleApplication & oJobRunner = tsl::ConsoleApplication::Instance(&JobRunner::Create);
    try
    {
        return oJobRunner.Main(iCount - 1, pArguments + 1);
    }
    catch (tsl::Exception const & oException)
    {
        std::cerr << "jobrunner: " << oException.GetText() << std::endl;
        return oException.GetResult().GetErrorCode();
    }
}
