#include "Launcher.h"

#include "CommandWords.h"
#include "LaunchSystem.h"

#include <tessel/OS.h>
#include <tessel/ValueString.h>

#include <fstream>
#include <iostream>
#include <sstream>

namespace
{

constexpr char LAUNCH[] = "--launch-job";

enum Argument
{
    eProgram,
    eLaunch,
    eFile,
    ePosition,
    eCount
};

/// Where the command of one job is in the file: texts that end with a zero each.
class LaunchReader
{
public:
    LaunchReader(char const * sFile, char const * sPosition) : m_oFile(sFile, std::ios::binary)
    {
        m_oFile.seekg(std::stoll(sPosition));
    }

    std::string ReadText()
    {
        std::string sText;
        std::getline(m_oFile, sText, '\0');
        return sText;
    }

    std::vector<std::string> ReadTexts()
    {
        std::vector<std::string> vTexts(static_cast<std::size_t>(std::stoll('0' + ReadText())));
        for (std::string & sText : vTexts)
            sText = ReadText();
        return vTexts;
    }

    bool IsGood() const { return m_oFile.good(); }

private:
    std::ifstream m_oFile;
};

void WriteText(std::string const & sText, std::string & sFile)
{
    sFile += sText;
    sFile += '\0';
}

void WriteTexts(std::vector<std::string> const & vTexts, std::string & sFile)
{
    WriteText(std::to_string(vTexts.size()), sFile);
    for (std::string const & sText : vTexts)
        WriteText(sText, sFile);
}

std::vector<std::string> GetWords(Job const & oJob)
{
    if (oJob.bShell)
        return LaunchSystem::GetShellWords(oJob.sCommand.s_str());
    return SplitCommand(oJob.sCommand.s_str());
}

void WriteJob(Job const & oJob, std::string & sFile)
{
    WriteText(oJob.sFolder, sFile);
    WriteText(LaunchSystem::GetInputFile(oJob.sStdin), sFile);
    WriteTexts(oJob.vEnvironment, sFile);
    WriteTexts(GetWords(oJob), sFile);
}

int Fail(std::string const & sWhat, int iError)
{
    std::cerr << "jobrunner: " << sWhat << ": " << tsl::OS::FormatError(iError).GetText().s_str()
              << std::endl;
    return LaunchSystem::GetExitCode(iError);
}

} // namespace

tsl::Result Launcher::Prepare(JobPlan & oPlan)
{
    std::string sFile;
    std::vector<std::size_t> vPositions;
    for (Job const & oJob : oPlan.vJobs)
    {
        vPositions.push_back(sFile.size());
        WriteJob(oJob, sFile);
    }

    std::string sName;
    if (int const iError = LaunchSystem::WriteToMemory(sFile, sName))
        return tsl::MakeResult(
            tsl::ERR::eSubsystem, "The commands of the jobs cannot be kept.", tsl::OS::FormatError(iError));
    for (std::size_t i = 0; i < oPlan.vJobs.size(); ++i)
        oPlan.vJobs[i].sLauncher = '"' + LaunchSystem::GetOwnProgram() + "\" " + LAUNCH + " \"" + sName
                                   + "\" " + std::to_string(vPositions[i]);
    return tsl::Result();
}

bool Launcher::IsAskedFor(int iCount, char ** pArguments)
{
    return iCount == eCount && std::string(pArguments[eLaunch]) == LAUNCH;
}

int Launcher::Run(char ** pArguments)
{
    LaunchReader oReader(pArguments[eFile], pArguments[ePosition]);
    std::string const sFolder = oReader.ReadText();
    std::string const sInput = oReader.ReadText();
    std::vector<std::string> const vEnvironment = oReader.ReadTexts();
    std::vector<std::string> const vWords = oReader.ReadTexts();
    if (!oReader.IsGood() || vWords.empty())
        return Fail("The command of the job is lost", 0);

    if (int const iError = LaunchSystem::EnterFolder(sFolder))
        return Fail("The folder '" + sFolder + "' cannot be entered", iError);
    if (int const iError = LaunchSystem::UseInput(sInput))
        return Fail("The standard input '" + sInput + "' cannot be opened", iError);
    return Fail("'" + vWords.front() + "' cannot be started", LaunchSystem::Become(vWords, vEnvironment));
}
