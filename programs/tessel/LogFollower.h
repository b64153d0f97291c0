#pragma once

#include "Command.h"
#include "LogReader.h"

#include <memory>
#include <vector>

/// Shows the content of the logs and then what is appended, until nobody reads the output or a signal ends the
/// program. If a log is replaced by another file, it is read to its end, and then the new one from its beginning.
///
/// A record counts as complete when its last line is complete and nothing was appended for a while.
[[nodiscard]] tsl::Result FollowLogs(std::vector<std::unique_ptr<LogReader>> const & vReaders,
    Output & oOutput, ReportFailure const & fReport);
