#pragma once

#include <cstdint>
#include <ctime>

/// The local time zone, and conversions between clock times and calendar dates. An int result is the system's
/// error number, 0 for success.
namespace tsl::Platform
{

/// Loads the time zone of the process and stores its standard offset for GetSecondsWest.
void LoadTimeZone();

/// The standard offset in seconds west of Greenwich, as stored by LoadTimeZone.
[[nodiscard]] int GetSecondsWest(long & iSeconds);

/// std::tm counts years from this one.
inline constexpr int YEAR_BASE = 1900;

/// Convert between seconds since 1970 and calendar elements, in local time or in UTC. The From functions
/// normalise elements that are out of range in place. They return -1 for a failure, as mktime does.
[[nodiscard]] int ToLocalTime(std::int64_t iTime, std::tm & oElements);
[[nodiscard]] int ToGreenwichTime(std::int64_t iTime, std::tm & oElements);
std::int64_t FromLocalTime(std::tm & oElements);
std::int64_t FromGreenwichTime(std::tm & oElements);

} // namespace tsl::Platform
