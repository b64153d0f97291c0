#pragma once

#include "Command.h"
#include "LogReader.h"

#include <memory>
#include <vector>

/// Shows what is in the logs and then what is appended, until nobody reads the output or a signal ends the program.
/// A log that another file takes the place of is read to its end, and then the other one from its beginning.
///
/// A record counts as complete when its last line is and nothing has followed for an interval.
[[nodiscard]] tsl::Result FollowLogs(std::vector<std::unique_ptr<LogReader>> const & vReaders,
    Output & oOutput, ReportFailure const & fReport);
