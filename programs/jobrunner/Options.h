#pragma once

#include <tessel/Result.h>
#include <tessel/String.h>

#include <vector>

/// What the arguments ask for.
struct Options
{
    enum class Action
    {
        eRun,
        eShowHelp,
        eShowVersion,
        eShowList,
        eShowOrder,
        eShowDot,
        eShowMermaid
    };

    Action eAction = Action::eRun;
    std::vector<tsl::String> vJobs; ///< those to run; empty for all
    tsl::String sFile = "jobrunner.ini";
    int iParallel = 0; ///< 0 for what the file says
    bool bFailFast = false;
    bool bResume = false;
};

/// Sorts the arguments, without the program's name, by tsl::CmdLineParser. Code 2, with a hint, for those that are not
/// known or not complete.
///
/// The parser knows no option by name: the word behind any option is its value, and what begins with a slash is an
/// option as well. Here the word behind an option that takes no value is the name of a job, and a value may also
/// follow behind "=".
tsl::Result ReadOptions(int iCount, char ** pArguments, Options & oOptions);
