#pragma once

#include <tessel/Export.h>

// The version of the headers, also for use in #if. Libraries with the same major and minor number are
// interchangeable; the file name of the library contains both numbers.
#define TSL_VERSION_MAJOR 1
#define TSL_VERSION_MINOR 0
#define TSL_VERSION_PATCH 0
#define TSL_VERSION_TEXT "1.0.0"

namespace tsl
{

/// The version of the loaded library, which may be newer than the headers that the program was compiled with.
/// Any thread may call.
///
///     std::cout << "compiled with " << TSL_VERSION_TEXT << ", runs with " << Version::GetText();
class TSL_EXPORT Version
{
public:
    Version() = delete;

    /// The numbers of the version.
    static int GetMajor();
    static int GetMinor();
    static int GetPatch();

    /// Such as "1.0.0".
    static char const * GetText();
};

} // namespace tsl
