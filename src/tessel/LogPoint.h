#pragma once

#include <tessel/Export.h>
#include <tessel/Support.h>

#include <atomic>
#include <limits>

namespace tsl
{

/// The level of one trace statement, read from the application's ini file on its first passage and never
/// again. Any thread may pass.
class TSL_EXPORT LogPoint
{
public:
    /// False once the log point is known to be off: one load and one test.
    bool MayBeOn() const { return m_iLevel.load(std::memory_order_relaxed) > 0; }

    /// Asks for the level on the first passage. True if it is above 0.
    bool IsOn(char const * sIdentifier, char const * sFile, int iLine);

private:
    static constexpr int LEVEL_UNKNOWN = std::numeric_limits<int>::max();

    std::atomic<int> m_iLevel{LEVEL_UNKNOWN};
};

/// The part of a trace statement for which its log point has to be on, apart from it so that the code
/// around the statement stays short.
template<class TextFunction>
[[gnu::noinline, gnu::cold]] void TraceIfOn(
    LogPoint & oLogPoint, char const * sIdentifier, TextFunction const & fText, char const * sFile, int iLine)
{
    // A trace statement has nobody to hand the processors' answer to.
    if (oLogPoint.IsOn(sIdentifier, sFile, iLine))
        static_cast<void>(Support::DispatchDebugMessage(sIdentifier, fText(), sFile, iLine));
}

/// A trace statement: if the log point of this place is on, builds the text and dispatches it as a
/// DebugMessage on the global bus.
///
///     Trace("Task", [&] { return String("Task '") + sName + "' starts"; });
///
/// Off, it costs one load and one branch that is not taken. Each lambda is a type of its own, so each
/// place has a log point of its own; the switch in the ini file is that of the identifier.
template<class TextFunction>
inline void Trace(char const * sIdentifier, TextFunction const & fText, char const * sFile = __builtin_FILE(),
    int iLine = __builtin_LINE())
{
    static constinit LogPoint oLogPoint;
    if (!oLogPoint.MayBeOn()) [[likely]]
        return;

    TraceIfOn(oLogPoint, sIdentifier, fText, sFile, iLine);
}

} // namespace tsl
