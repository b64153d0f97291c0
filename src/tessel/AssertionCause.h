#pragma once

#include <tessel/Assertion.h>

namespace tsl
{

/// XAssertionFailed with an information, and with oCause as the history of the thrown Result.
[[noreturn]] void XAssertionFailedBy(char const * sExpression, String const & sInfo, Result const & oCause,
    char const * sFile = __builtin_FILE(), int iLine = __builtin_LINE());

} // namespace tsl
