#pragma once

#include "LogRecord.h"

#include <patternmatcher/PatternMatcher.h>

#include <limits>
#include <memory>
#include <string>
#include <vector>

/// What a record must be like to be selected. An empty list asks for nothing.
class LogFilter
{
public:
    LogTime iSince = std::numeric_limits<LogTime>::min();
    LogTime iUntil = std::numeric_limits<LogTime>::max(); ///< included
    std::vector<RecordKind> vKinds;                       ///< one of them, as in the next three
    std::vector<std::string> vIds;
    std::vector<int> vProcesses;
    std::vector<int> vThreads;
    std::vector<std::unique_ptr<tsl::PatternMatcher>> vPatterns; ///< each of them is in the text
    std::vector<std::pair<std::string, std::string>> vFields;    ///< each of them, name and value

    /// One thread at a time.
    bool Selects(LogRecord const & oRecord) const;

private:
    bool HasPatterns(std::string_view sText) const;

    mutable tsl::PatternMatcher::Matches m_oMatches;
};
