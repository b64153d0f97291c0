#include "../shared/NearestName.h"
#include "../shared/System.h"
#include "Arguments.h"
#include "Command.h"
#include "FailurePrinter.h"

#include <tessel/Tessel.h>

#include <algorithm>
#include <exception>
#include <iostream>

namespace
{

constexpr char HELP[] = R"(tessel looks after what programs written with Tessel read and write.

  tessel log [OPTION...] [FILE...]  shows and filters log files
  tessel ini [OPTION] FILE...       checks ini files; reads or changes a key
  tessel COMMAND --help             shows the options of a command
  tessel --version                  shows the version
  tessel --help                     shows this text

The exit code is 0; 1 if something cannot be read or written, or an ini file is wrong; 2 for wrong arguments.
)";

std::vector<Command> const & GetCommands()
{
    static std::vector<Command> const vCommands = {LOG_COMMAND, INI_COMMAND};
    return vCommands;
}

class TesselConfig : public tsl::ConsoleApplicationConfig
{
};

/// Runs the command whose name is the first argument.
class TesselProgram : public tsl::ConsoleApplication
{
public:
    TesselProgram() : ConsoleApplication(new TesselConfig) {}

    /// The printer is destroyed before the application's bus, so it must be unregistered.
    ~TesselProgram() override { GetDispatcher().Unregister(m_oFailurePrinter); }

    static tsl::Application * Create() { return new TesselProgram; }

    /// All arguments except the program's name. They are not passed to Main; the comment of Arguments says why.
    void SetArguments(std::vector<std::string> vArguments) { m_vArguments = std::move(vArguments); }

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
        m_oOutcome = RunCommand();
        // Output from before a failure is still shown. If that fails, it matters more than the failure.
        tsl::Result const oWritten = m_oOutput.Finish();
        if (oWritten.IsError())
            m_oOutcome = oWritten;
        // If nobody reads the output any more, the exit code alone tells of a failure.
        return m_oOutput.IsUnread() ? tsl::Result() : m_oOutcome;
    }

    /// Returns the exit code. The failures were printed before; this one is printed by nobody.
    tsl::Result PostRun() override
    {
        GetDispatcher().Unregister(m_oFailurePrinter);
        tsl::Result oResult = ConsoleApplication::PostRun();
        if (m_oOutcome.IsError())
            return m_oOutcome;
        if (m_bReported)
            return tsl::MakeResult(tsl::ERR::eAccessDenied, "Something could not be read or written.");
        return oResult;
    }

private:
    tsl::Result RunCommand()
    {
        if (m_vArguments.empty())
            return MakeUsageFailure("A command is missing, log or ini. 'tessel --help' tells more.");

        std::string const sName = m_vArguments.front();
        m_vArguments.erase(m_vArguments.begin());
        if (sName == "--help" || sName == "-h")
            m_oOutput.Write(HELP);
        else if (sName == "--version")
            m_oOutput.Write("tessel " TESSEL_VERSION "\n");
        else
            return RunCommand(sName);
        return tsl::Result();
    }

    tsl::Result RunCommand(std::string const & sName)
    {
        std::vector<std::string> vNames = {"--help", "--version"};
        for (Command const & oCommand : GetCommands())
        {
            if (sName == oCommand.sName)
                return oCommand.fRun(m_vArguments, m_oOutput,
                    [this](tsl::Result const & oFailure)
                    {
                        m_bReported = true;
                        ProcessError(oFailure);
                    });
            vNames.emplace_back(oCommand.sName);
        }
        return MakeUsageFailure("There is no command '" + sName + "'." + AskForNearest(sName, vNames)
                                + " 'tessel --help' shows all.");
    }

    std::vector<std::string> m_vArguments;
    Output m_oOutput;
    FailurePrinter m_oFailurePrinter;
    tsl::Result m_oOutcome;
    bool m_bReported = false;
};

int PrintAndEnd(char const * sText, int iExitCode)
{
    std::cerr << "tessel: " << sText << std::endl;
    return iExitCode;
}

} // namespace

int main(int iCount, char ** pArguments)
{
    System::IgnoreWriteSignals();
    auto & oTessel = static_cast<TesselProgram &>(tsl::ConsoleApplication::Instance(&TesselProgram::Create));
    try
    {
        oTessel.SetArguments({pArguments + std::min(iCount, 1), pArguments + iCount});
        return oTessel.Main(0, nullptr);
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
