#pragma once

#include "../shared/Output.h"

#include <functional>
#include <string>
#include <vector>

/// Reports a failure that does not end the command.
using ReportFailure = std::function<void(tsl::Result const &)>;

/// One of the program's commands.
struct Command
{
    char const * sName;

    /// Runs the command with the arguments after its name. Code 2 for wrong arguments; other codes for other
    /// failures.
    tsl::Result (*fRun)(
        std::vector<std::string> const & vArguments, Output & oOutput, ReportFailure const & fReport);
};

extern Command const LOG_COMMAND;
extern Command const INI_COMMAND;
