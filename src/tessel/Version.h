#pragma once

#include <tessel/Export.h>

// The version of the headers, for use in #if as well. Libraries with the same first two numbers can replace each
// other; the name of the library's file has these two.
#define TSL_VERSION_MAJOR 1
#define TSL_VERSION_MINOR 0
#define TSL_VERSION_PATCH 0
#define TSL_VERSION_TEXT "1.0.0"

namespace tsl
{

/// The version of the library that the program runs with, which may be newer than the headers that it was compiled
/// with. Any thread may call.
class TSL_EXPORT Version
{
public:
    Version() = delete;

    static int GetMajor();
    static int GetMinor();
    static int GetPatch();

    /// Such as "1.0.0".
    static char const * GetText();
};

} // namespace tsl
