#pragma once

#include <tessel/Export.h>

namespace tsl
{

class Result;
class String;

/// Reports a failed assertion and throws it, in every build.
///
///     if (!pObject)
///         XAssertionFailed("pObject", "Object must not be null.");
///
/// The Result has error code 6, category 2 and the text `XAssertion. Expression "..." failed.` with sInfo and
/// the source place. It goes to the global bus as a ResultMessage and is thrown as an Exception. A failure of
/// the bus is ignored. An assertion that fails while another one is being reported on the same thread is only
/// thrown. Any thread may call. Locks of the caller stay locked until the stack unwinds. If
/// the thread is cancelled while it reports, it ends there.
///
/// @param sExpression the broken rule as a text, "false" for an unconditional failure
/// @param sInfo what is known about the failure, "Unknown" for nothing
[[noreturn]] TSL_EXPORT void XAssertionFailed(char const * sExpression, char const * sInfo,
    char const * sFile = __builtin_FILE(), int iLine = __builtin_LINE());

/// The same with a String.
[[noreturn]] TSL_EXPORT void XAssertionFailed(char const * sExpression, String const & sInfo,
    char const * sFile = __builtin_FILE(), int iLine = __builtin_LINE());

/// The same for a failure that a Result has caused: there is no information, and oCause becomes the history of the
/// thrown Result. A success leaves the history empty.
[[noreturn]] TSL_EXPORT void XAssertionFailed(char const * sExpression, Result const & oCause,
    char const * sFile = __builtin_FILE(), int iLine = __builtin_LINE());

} // namespace tsl
