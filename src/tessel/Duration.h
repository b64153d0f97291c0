#pragma once

#include <tessel/Export.h>

#include <cstdint>

namespace tsl
{

/// A stopwatch, in milliseconds. Its clock only goes forward, at the same pace whether the process works,
/// waits or sleeps, and whatever happens to the time of day.
///
/// An object is used by one thread at a time.
class TSL_EXPORT Duration
{
public:
    Duration() = default;
    Duration(Duration const & oSource) = default;
    Duration & operator=(Duration const & oSource) = default;
    virtual ~Duration();

    /// Runs from zero, also if it was running.
    void Start();

    /// Stands still. A watch that stands takes the time until now as well; one that was never started
    /// stays at 0.
    void Stop();

    /// Milliseconds from Start until Stop, or until now while the watch runs; 0 before the first Start.
    /// Where a long has 32 bits, the number wraps around after about 24 days.
    long GetDuration() const;

private:
    std::int64_t m_iStart = -1; ///< -1 before the first Start
    std::int64_t m_iStop = -1;  ///< -1 while the watch runs
};

} // namespace tsl
