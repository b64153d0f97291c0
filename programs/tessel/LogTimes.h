#pragma once

#include "LogRecord.h"

#include <ctime>
#include <string_view>

enum class TimeEdge
{
    eBegin, ///< "13.11.2026" is the first second of the day
    eEnd    ///< "13.11.2026" is the last second of the day
};

/// Parses a time of a user, in local time: "13.11.2026 15:08:14" or "2026-11-13 15:08:14", also with a T between
/// date and time, without seconds or without time; "15:08" or "15:08:14" of today; "90s", "10m", "2h" or "3d" ago.
/// Returns false for anything else.
bool ReadLogTime(std::string_view sText, std::time_t iNow, TimeEdge eEdge, LogTime & iTime);
