#pragma once

#include <cstdint>

/// Clocks and sleeping.
namespace tsl::Platform
{

/// Seconds since 1970-01-01 00:00:00 UTC.
std::int64_t GetTime();

/// Milliseconds of a clock that never goes back and that counts the time for which the machine is suspended.
/// Only differences have a meaning.
std::int64_t GetSteadyTime();

/// Suspends the calling thread for iDuration milliseconds. Returns at once for 0 or less.
void Sleep(int iDuration);

/// The same, but returns early after the thread has run a signal handler.
void SleepAlertably(int iDuration);

} // namespace tsl::Platform
