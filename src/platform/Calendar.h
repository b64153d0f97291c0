#pragma once

#include <cstdint>
#include <ctime>

/// The local zone, and times of the clock as calendar dates. An int result is the system's error number, 0 for
/// success.
namespace tsl::Platform
{

/// Loads the zone of the process and remembers how far its standard time is west of Greenwich.
void LoadTimeZone();

/// Seconds west of Greenwich, as remembered by LoadTimeZone.
[[nodiscard]] int GetSecondsWest(long & iSeconds);

/// What the years of std::tm count from.
inline constexpr int YEAR_BASE = 1900;

/// Between a time and its elements, in the local zone or in Greenwich. From elements: overflows are
/// normalised in place, and a result of -1 is a failure, as the runtime library has it.
[[nodiscard]] int ToLocalTime(std::int64_t iTime, std::tm & oElements);
[[nodiscard]] int ToGreenwichTime(std::int64_t iTime, std::tm & oElements);
std::int64_t FromLocalTime(std::tm & oElements);
std::int64_t FromGreenwichTime(std::tm & oElements);

} // namespace tsl::Platform
