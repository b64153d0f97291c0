#pragma once

#include "LogRecord.h"

#include <ctime>
#include <string_view>

enum class TimeEdge
{
    eBegin, ///< what a given time leaves out begins there: "13.11.2026" is its first second
    eEnd    ///< "13.11.2026" is its last second
};

/// Reads a time as a user gives it, by the local clock: "13.11.2026 15:08:14", "2026-11-13 15:08:14" or with a T
/// between, without seconds or without time of day; "15:08" or "15:08:14" of today; "90s", "10m", "2h" or "3d"
/// ago. False for anything else.
bool ReadLogTime(std::string_view sText, std::time_t iNow, TimeEdge eEdge, LogTime & iTime);
