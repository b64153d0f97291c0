#include "JobChecks.h"

#include "CommandWords.h"
#include "FileProblems.h"
#include "LaunchSystem.h"

#include <tessel/OS.h>
#include <tessel/ValueString.h>

#include <algorithm>
#include <array>
#include <filesystem>

namespace
{

std::string FindVariable(Job const & oJob, std::string const & sName)
{
    std::string const sBegin = sName + '=';
    for (std::string const & sVariable : oJob.vEnvironment)
        if (sVariable.starts_with(sBegin))
            return sVariable.substr(sBegin.size());
    return {};
}

/// What to do about a program that is missing.
std::string HintAtProgram(std::string const & sProgram)
{
    static constexpr std::array aShellWords = {
        "cd", "export", "source", ".", "set", "eval", "if", "for", "while", "exit", "ulimit", "umask"};
    if (std::find(aShellWords.begin(), aShellWords.end(), sProgram) != aShellWords.end())
        return " It is a word of shells; Shell=yes runs the command by one.";
    if (sProgram.find('/') != std::string::npos)
        return " A path is relative to the job's folder.";
    return " It is looked for in the folders of PATH.";
}

void CheckProgram(Job const & oJob, tsl::String const & sChapter, FileProblems & oProblems)
{
    if (oJob.bShell)
        return;
    std::vector<std::string> const vWords = SplitCommand(oJob.sCommand.s_str());
    std::string const sProgram = vWords.empty() ? std::string() : vWords.front();
    if (int const iError = LaunchSystem::FindProgram(sProgram, oJob.sFolder, FindVariable(oJob, "PATH")))
        oProblems.Add(sChapter, "Command",
            "The program '" + sProgram + "' cannot be started: "
                + tsl::OS::FormatError(iError).GetText().s_str() + "." + HintAtProgram(sProgram));
}

void CheckJob(Job const & oJob, FileProblems & oProblems)
{
    tsl::String const sChapter = tsl::String("Job/") + oJob.sName;
    std::error_code oError;
    if (!oJob.sFolder.empty() && !std::filesystem::is_directory(oJob.sFolder, oError))
    {
        oProblems.Add(sChapter, "Folder", "There is no folder '" + oJob.sFolder + "'.");
        return;
    }
    if (!oJob.sStdin.empty() && oJob.sStdin != "yes"
        && !std::filesystem::exists(std::filesystem::path(oJob.sFolder) / oJob.sStdin, oError))
        oProblems.Add(sChapter, "Stdin",
            "There is no file '" + oJob.sStdin + "'. 'yes' stands for the standard input of jobrunner.");
    CheckProgram(oJob, sChapter, oProblems);
}

} // namespace

tsl::Result CheckFirstJobs(tsl::String const & sFile, JobPlan const & oPlan)
{
    FileProblems oProblems(sFile);
    for (Job const & oJob : oPlan.vJobs)
        if (oJob.vAfter.empty())
            CheckJob(oJob, oProblems);
    return oProblems.GetFailure();
}
