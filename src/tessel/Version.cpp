#include <tessel/Version.h>

namespace tsl
{

int Version::GetMajor()
{
    return TSL_VERSION_MAJOR;
}

int Version::GetMinor()
{
    return TSL_VERSION_MINOR;
}

int Version::GetPatch()
{
    return TSL_VERSION_PATCH;
}

char const * Version::GetText()
{
    return TSL_VERSION_TEXT;
}

} // namespace tsl
