#pragma once

#include <tessel/Export.h>

namespace tsl
{

/// The error codes of the library and their texts.
///
///     return MakeResult(ERR::eNotFound, "There is no such job.");
///
/// A Result may also have any other number as its code; error numbers of the operating system, for example,
/// are in the previous failure of a failure with code eSubsystem.
///
/// Choose a code by what the caller can do about the failure: pass other data (eBadData, eOutOfRange), call
/// at another time (eNotAllowed, eTimeout), provide what is missing (eNotFound, eAccessDenied), or nothing
/// (eSubsystem, eInternal).
class TSL_EXPORT ERR
{
public:
    enum
    {
        /// No failure. But a Result with this code is a failure: only an empty Result is a success.
        eNoError = 0,

        /// Something exists but cannot be opened or used, because a right is missing or others use it. If it
        /// does not exist: eNotFound. The library also uses it for a malformed command line, and for an
        /// operation on a child process when there is none.
        eAccessDenied = 1,

        /// Text or data of the wrong form. If the form is right but the value too large or too small:
        /// eOutOfRange.
        eBadData = 2,

        /// The call is not possible in the present state of the object, whatever the arguments: for example,
        /// starting a thread that is running. If that state is a bug of the program: eInternal.
        eNotAllowed = 3,

        /// A number, a length or a date outside of its limits. A text that is no number at all: eBadData.
        eOutOfRange = 4,

        /// There is no such file, chapter, key or library. If it exists but cannot be opened: eAccessDenied.
        eNotFound = 5,

        /// A bug of the program: a failed assertion, or an exception that leaves a thread. A mistake of the
        /// user: eBadData.
        eInternal = 6,

        /// The local time zone is unknown. The code has no text.
        eTimeZoneQuery = 7,

        /// A source of data has been read to its end.
        eNoMoreData = 8,

        /// A source of data has more than was requested; the rest can still be read.
        eMoreData = 9,

        /// A call of the operating system has failed. The previous failure has its error number and text.
        eSubsystem = 10,

        /// Something has not happened in time, but still may. If it will not happen any more: eTerminated.
        eTimeout = 11,

        /// An operation was cancelled, for example by the user.
        eTerminated = 12
    };

    /// The text of a code; "Unknown error" for a code without one. It is never freed. Any thread may call.
    static char const * GetErrorText(int iErrorCode);
};

} // namespace tsl
