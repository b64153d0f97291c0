#include "../shared/Output.h"
#include "../shared/System.h"
#include "FailurePrinter.h"
#include "Help.h"
#include "JobFile.h"
#include "JobOrder.h"
#include "JobRun.h"
#include "Launcher.h"
#include "Options.h"
#include "RunHistory.h"

#include <tessel/Tessel.h>

#include <algorithm>
#include <iostream>
#include <sstream>

namespace
{

class JobRunnerConfig : public tsl::ConsoleApplicationConfig
{
};

/// Runs the jobs of an ini file, or shows them.
class JobRunner : public tsl::ConsoleApplication
{
public:
    JobRunner() : ConsoleApplication(new JobRunnerConfig) {}

    /// The printer is destroyed before the application's bus, so it must be unregistered.
    ~JobRunner() override { GetDispatcher().Unregister(m_oFailurePrinter); }

    static tsl::Application * Create() { return new JobRunner; }

    /// Without the program's name. They do not go through Main, which ends before anything could be printed if they
    /// are wrong.
    void SetArguments(int iCount, char ** pArguments)
    {
        m_iArguments = iCount;
        m_pArguments = pArguments;
    }

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
        tsl::Result const oWritten = m_oOutput.Finish();
        if (m_oOutcome.IsError() && oWritten.IsError())
            ProcessError(oWritten);
        else if (m_oOutcome.IsOk())
            m_oOutcome = oWritten;
        // Whoever does not read the output any more needs no word about it.
        return m_oOutput.IsUnread() ? tsl::Result() : m_oOutcome;
    }

    /// Returns the exit code. The failure of Run was printed before; this one is printed by nobody.
    tsl::Result PostRun() override
    {
        GetDispatcher().Unregister(m_oFailurePrinter);
        tsl::Result oResult = ConsoleApplication::PostRun();
        return m_oOutcome.IsError() ? m_oOutcome : oResult;
    }

private:
    tsl::Result DoWhatIsAsked()
    {
        Options oOptions;
        if (tsl::Result oResult = ReadOptions(m_iArguments, m_pArguments, oOptions); oResult.IsError())
            return oResult;
        if (oOptions.eAction == Options::Action::eShowHelp)
            m_oOutput.Write(HELP);
        else if (oOptions.eAction == Options::Action::eShowVersion)
            m_oOutput.Write("jobrunner " TESSEL_VERSION "\n");
        else
            return UseFile(oOptions);
        return tsl::Result();
    }

    tsl::Result UseFile(Options const & oOptions)
    {
        JobPlan oPlan;
        if (tsl::Result oResult = ReadJobPlan(oOptions.sFile, oPlan); oResult.IsError())
            return oResult;
        if (oOptions.iParallel > 0)
            oPlan.iParallel = oOptions.iParallel;
        RunHistory oHistory(oOptions.sFile);
        if (tsl::Result oResult = Select(oOptions, oHistory, oPlan); oResult.IsError())
            return oResult;

        if (oOptions.eAction == Options::Action::eRun && oPlan.vJobs.empty())
            m_oOutput.Write("Nothing is left to run: all these jobs have succeeded the last time.\n");
        else if (oOptions.eAction == Options::Action::eRun)
            return JobRun(oOptions, oPlan, oHistory, m_oOutput,
                [this](tsl::Result const & oFailure) { ProcessError(oFailure); })
                .Run();
        else
            Show(oOptions.eAction, oPlan);
        return tsl::Result();
    }

    /// Leaves out the jobs that nobody wants.
    static tsl::Result Select(Options const & oOptions, RunHistory const & oHistory, JobPlan & oPlan)
    {
        std::vector<std::size_t> vJobs;
        for (tsl::String const & sName : oOptions.vJobs)
            if (std::size_t iJob = 0; FindJob(oPlan, sName, iJob))
                vJobs.push_back(iJob);
            else
                return tsl::MakeResult(tsl::ERR::eBadData, tsl::String("There is no job '") + sName + "'."
                                                               + AskForJob(oPlan, sName).c_str()
                                                               + " --list shows all.");

        std::vector<bool> vKeep =
            vJobs.empty() ? std::vector<bool>(oPlan.vJobs.size(), true) : FindNeeded(oPlan, vJobs);
        for (std::size_t i = 0; oOptions.bResume && i < vKeep.size(); ++i)
            vKeep[i] = vKeep[i] && !oHistory.Get(oPlan.vJobs[i].sName).bDone;
        KeepJobs(oPlan, vKeep);
        return tsl::Result();
    }

    void Show(Options::Action eAction, JobPlan const & oPlan)
    {
        std::ostringstream oText;
        if (eAction == Options::Action::eShowList)
            WriteNames(oPlan, oText);
        else if (eAction == Options::Action::eShowOrder)
            WriteOrder(oPlan, oText);
        else if (eAction == Options::Action::eShowDot)
            WriteGraph(oPlan, oText);
        else
            WriteMermaid(oPlan, oText);
        m_oOutput.Write(oText.str());
    }

    int m_iArguments = 0;
    char ** m_pArguments = nullptr;
    Output m_oOutput;
    FailurePrinter m_oFailurePrinter;
    tsl::Result m_oOutcome;
};

int PrintAndEnd(char const * sText, int iExitCode)
{
    std::cerr << "jobrunner: " << sText << std::endl;
    return iExitCode;
}

} // namespace

int main(int iCount, char ** pArguments)
{
    if (Launcher::IsAskedFor(iCount, pArguments))
        return Launcher::Run(pArguments);

    System::IgnoreWriteSignals();
    auto & oJobRunner = static_cast<JobRunner &>(tsl::ConsoleApplication::Instance(&JobRunner::Create));
    try
    {
        oJobRunner.SetArguments(iCount - std::min(iCount, 1), pArguments + std::min(iCount, 1));
        return oJobRunner.Main(0, nullptr);
    }
    catch (tsl::Exception const & oException)
    {
        return PrintAndEnd(oException.GetText(), oException.GetResult().GetErrorCode());
    }
    catch (std::exception const & oException)
    {
        return PrintAndEnd(oException.what(), tsl::ERR::eInternal);
    }
}
