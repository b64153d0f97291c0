#pragma once

#include <tessel/Export.h>

namespace tsl
{

class Result;
class String;

/// The library's one reaction to a broken internal rule, in every build.
///
/// Makes a Result of error code 6 and category 2 with the text `XAssertion. Expression "..." failed.`,
/// the information and the given source place, reports it as a ResultMessage on the global bus, and
/// throws it as an Exception. What the bus answers is not looked at. An assertion that is raised while
/// another one is being reported on the same thread is thrown without a report of its own. Callable
/// from any thread; locks that the caller holds stay held until the stack unwinds. If the thread is cancelled
/// while it reports, it ends there.
///
/// @param sExpression the broken rule as a text, "false" where the failure is unconditional
/// @param sInfo what is known about the failure, "Unknown" if there is nothing to say
[[noreturn]] TSL_EXPORT void XAssertionFailed(char const * sExpression, char const * sInfo,
    char const * sFile = __builtin_FILE(), int iLine = __builtin_LINE());

/// The same with the information as a String.
[[noreturn]] TSL_EXPORT void XAssertionFailed(char const * sExpression, String const & sInfo,
    char const * sFile = __builtin_FILE(), int iLine = __builtin_LINE());

/// The same for a failure that a Result has caused: it takes the place of the information and stands in
/// the history of what is thrown. A success leaves the history empty.
[[noreturn]] TSL_EXPORT void XAssertionFailed(char const * sExpression, Result const & oCause,
    char const * sFile = __builtin_FILE(), int iLine = __builtin_LINE());

} // namespace tsl
