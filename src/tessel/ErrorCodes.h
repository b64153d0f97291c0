#pragma once

#include <tessel/Export.h>

namespace tsl
{

/// The error codes of the library and their texts. A code outside of the table may be any number, such as
/// the operating system's own.
class TSL_EXPORT ERR
{
public:
    enum
    {
        eNoError = 0,
        eAccessDenied = 1,
        eBadData = 2,
        eNotAllowed = 3,
        eOutOfRange = 4,
        eNotFound = 5,
        eInternal = 6,
        eTimeZoneQuery = 7, ///< has no text of its own
        eNoMoreData = 8,
        eMoreData = 9,
        eSubsystem = 10,
        eTimeout = 11,
        eTerminated = 12
    };

    /// The code's text, "Unknown error" for a code without one. The texts live as long as the library.
    static char const * GetErrorText(int iErrorCode);
};

} // namespace tsl
