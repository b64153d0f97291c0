#pragma once

#include <cstdint>

/// The clocks, and waiting for time to pass.
namespace tsl::Platform
{

/// Seconds since 1970-01-01 00:00:00 UTC.
std::int64_t GetTime();

/// Milliseconds of a clock that only goes forward, also while the machine is suspended. Only differences count.
std::int64_t GetSteadyTime();

/// Suspends the calling thread for so many milliseconds; not at all for 0 or less.
void Sleep(int iDuration);

/// The same, but returns early once the thread has run a handler of a signal.
void SleepAlertably(int iDuration);

} // namespace tsl::Platform
