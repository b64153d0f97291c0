#pragma once

#include <cstddef>
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

/// Writes the elements as strftime does and returns the length of the text, 0 if it is empty or does not fit.
/// Any format is safe; what becomes of a directive that the runtime library does not know depends on the
/// system.
std::size_t FormatTime(char * pText, std::size_t iSize, char const * sFormat, std::tm const & oElements);

} // namespace tsl::Platform
