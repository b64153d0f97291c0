#pragma once

#include <tessel/Export.h>

#include <cstdint>

namespace tsl
{

/// A stopwatch, in milliseconds.
///
///     Duration oTime;
///     oTime.Start();
///     DoWork();
///     long const iMilliseconds = oTime.GetDuration();
///
/// Its clock is steady: it does not depend on the time of day, and runs on while the process waits or the
/// machine is suspended. One thread at a time uses an object.
class TSL_EXPORT Duration
{
public:
    Duration() = default;
    Duration(Duration const & oSource) = default;
    Duration & operator=(Duration const & oSource) = default;
    virtual ~Duration();

    /// Starts or restarts from 0.
    void Start();

    /// Stops. If the watch has already been stopped, the duration becomes the time until now. A watch that
    /// was never started stays at 0.
    void Stop();

    /// Milliseconds from Start until Stop, or until now while the watch runs; 0 before the first Start.
    /// Where a long has 32 bits, the number wraps around after about 24 days.
    long GetDuration() const;

private:
    std::int64_t m_iStart = -1; ///< -1 before the first Start
    std::int64_t m_iStop = -1;  ///< -1 while the watch runs
};

} // namespace tsl
