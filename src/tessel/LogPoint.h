#pragma once

#include <tessel/Export.h>
#include <tessel/Support.h>

#include <atomic>
#include <new>

namespace tsl
{

/// What is known of the log points at the places that pass functions of one type to Trace. Each lambda is a
/// type of its own, so nearly always that is one place.
///
/// The level of a place is that of its identifier in the application's ini file, so places are told apart by
/// their identifiers. Any thread may pass.
class TSL_EXPORT LogPoint
{
public:
    /// False for the identifier that is known to be off: one load and one test (R01).
    bool MayBeOn(char const * sIdentifier) const
    {
        return m_sOff.load(std::memory_order_relaxed) != sIdentifier;
    }

    /// True if the level of the identifier is above 0. It is asked for on the first passage and never again,
    /// unless several identifiers share the object: then on each passage of all of them but the first that
    /// is on and the first that is off.
    bool IsOn(char const * sIdentifier, char const * sFile, int iLine);

private:
    std::atomic<char const *> m_sOff{nullptr};
    std::atomic<char const *> m_sOn{nullptr};
};

/// The part of a trace statement for which its log point has to be on, apart from it so that the code
/// around the statement stays short.
template<class TextFunction>
[[gnu::noinline, gnu::cold]] void TraceIfOn(
    LogPoint & oLogPoint, char const * sIdentifier, TextFunction const & fText, char const * sFile, int iLine)
{
    // A trace statement has nobody to hand the processors' answer to. Nor may a line that there is no memory
    // for disturb what it tells of.
    try
    {
        if (oLogPoint.IsOn(sIdentifier, sFile, iLine))
            static_cast<void>(Support::DispatchDebugMessage(sIdentifier, fText(), sFile, iLine));
    }
    catch (std::bad_alloc const &)
    {
    }
}

/// A trace statement: if the log point of this place is on, builds the text and dispatches it as a
/// DebugMessage on the global bus.
///
///     Trace("Task", [&] { return String("Task '") + sName + "' starts"; });
///
/// Off, it costs one load and one branch that is not taken; a function that is passed under several
/// identifiers (one that is no lambda, or has a name) costs a look-up of the level at each passage. The
/// identifier is a literal. A line that there is no memory for is dropped.
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
