#pragma once

#include "LogRecord.h"

#include <patternmatcher/PatternMatcher.h>

#include <limits>
#include <memory>
#include <string>
#include <vector>

/// The conditions for a record to be selected. An empty list is no condition. One thread at a time uses it.
class LogFilter
{
public:
    LogTime iSince = std::numeric_limits<LogTime>::min();
    LogTime iUntil = std::numeric_limits<LogTime>::max(); ///< included
    std::vector<RecordKind> vKinds;                       ///< one must match, as in the next three
    std::vector<std::string> vIds;
    std::vector<int> vProcesses;
    std::vector<int> vThreads;
    std::vector<std::unique_ptr<tsl::PatternMatcher>> vPatterns; ///< each must match a part of the text
    std::vector<std::pair<std::string, std::string>>
        vFields; ///< names and values; each must be in the record

    bool Selects(LogRecord const & oRecord) const;

private:
    bool HasPatterns(std::string_view sText) const;

    mutable tsl::PatternMatcher::Matches m_oMatches;
};
