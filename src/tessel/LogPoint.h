#pragma once

#include <tessel/Export.h>
#include <tessel/Support.h>

#include <atomic>
#include <new>

namespace tsl
{

/// The cached state of a trace statement: its identifier is on or off. Trace has one static object for each type of
/// function that it is called with. Each lambda is a type of its own, so an object nearly always belongs to one
/// statement.
///
/// The level of an identifier is in the program's ini file; see Support::RegisterLogPoint. Identifiers are compared
/// by address. Any thread may use it.
class TSL_EXPORT LogPoint
{
public:
    /// Fast path: false if the identifier is the one known to be off. One load and one test (R01).
    bool MayBeOn(char const * sIdentifier) const
    {
        return m_sOff.load(std::memory_order_relaxed) != sIdentifier;
    }

    /// True if the level of the identifier is above 0. The level is looked up by the first call only. If several
    /// identifiers share the object, the first that is on and the first that is off are cached; the others are
    /// looked up by each call.
    bool IsOn(char const * sIdentifier, char const * sFile, int iLine);

private:
    std::atomic<char const *> m_sOff{nullptr};
    std::atomic<char const *> m_sOn{nullptr};
};

/// The rest of a trace statement, unless its log point is known to be off. Out of line, to keep the caller small
/// (R01).
template<class TextFunction>
[[gnu::noinline, gnu::cold]] void TraceIfOn(
    LogPoint & oLogPoint, char const * sIdentifier, TextFunction const & fText, char const * sFile, int iLine)
{
    // Nobody wants the processors' result, and lack of memory for a trace must not disturb the traced code.
    try
    {
        if (oLogPoint.IsOn(sIdentifier, sFile, iLine))
            static_cast<void>(Support::DispatchDebugMessage(sIdentifier, fText(), sFile, iLine));
    }
    catch (std::bad_alloc const &)
    {
    }
}

/// A trace statement: if the log point of this place is on, calls fText and sends the text as a DebugMessage over
/// the global bus.
///
///     Trace("Task", [&] { return String("Task '") + sName + "' starts"; });
///
/// Any thread may trace. While off, it costs one load and one branch that is not taken. The identifier must be a
/// literal. Write the lambda into the call: a named function that is passed with several identifiers costs a lookup
/// of the level each time. A line for which there is no memory is dropped.
template<class TextFunction>
inline void Trace(char const * sIdentifier, TextFunction const & fText, char const * sFile = __builtin_FILE(),
    int iLine = __builtin_LINE())
{
    static constinit LogPoint oLogPoint;
    if (!oLogPoint.MayBeOn(sIdentifier)) [[likely]]
        return;

    TraceIfOn(oLogPoint, sIdentifier, fText, sFile, iLine);
}

} // namespace tsl
