#pragma once

#include <tessel/Export.h>

namespace tsl
{

/// The error codes of the library and their texts. A code outside of the table may be any number, such as
/// the operating system's own, which a failure of code eSubsystem carries in its cause.
///
/// Choose a code by what the caller can do about the failure: hand over other data (eBadData, eOutOfRange), call
/// at another time (eNotAllowed, eTimeout), provide what is missing (eNotFound, eAccessDenied), or nothing at all
/// (eSubsystem, eInternal).
class TSL_EXPORT ERR
{
public:
    enum
    {
        /// No failure. A Result is a success if it holds nothing, not if its code is this one.
        eNoError = 0,

        /// Something that is there cannot be opened or used, for want of a right or because others use it. For what
        /// is not there: eNotFound. The library also reports with it a malformed command line, and a child process
        /// that is asked for something while there is none.
        eAccessDenied = 1,

        /// Text or data that does not have the expected form. For data of the right form that is too large or too
        /// small: eOutOfRange.
        eBadData = 2,

        /// The call is not possible in the object's present state, whatever its arguments are: a thread that runs
        /// is started again. For a state that is itself a fault of the program: eInternal.
        eNotAllowed = 3,

        /// A number, a length or a date outside of its limits. For text that is no number at all: eBadData.
        eOutOfRange = 4,

        /// There is no such file, chapter, key or library. For one that is there and cannot be opened: eAccessDenied.
        eNotFound = 5,

        /// A broken rule inside the program: failed assertions and whatever escapes from a thread. For a mistake of
        /// the user: eBadData.
        eInternal = 6,

        /// The local time zone cannot be found out. It has no text of its own.
        eTimeZoneQuery = 7,

        /// A source of data has been read to its end.
        eNoMoreData = 8,

        /// A source of data has more than was asked for, which is still there.
        eMoreData = 9,

        /// The operating system has failed a call; the cause carries its number and text.
        eSubsystem = 10,

        /// Something has not happened in time, and may still happen. For what will not happen any more: eTerminated.
        eTimeout = 11,

        /// An operation was broken off, by its user for instance.
        eTerminated = 12
    };

    /// The code's text, "Unknown error" for a code without one. The texts live as long as the library.
    static char const * GetErrorText(int iErrorCode);
};

} // namespace tsl
