#include "platform/Errors.h"

#include "platform/ForcedEnd.h"

#include <cerrno>
#include <cstring>

namespace tsl::Platform
{

int GetLastError()
{
    return errno;
}

std::string GetErrorText(int iError)
{
    // The text may be looked up in a catalogue.
    NoKillScope const oScope;
    char aBuffer[256];
    return ::strerror_r(iError, aBuffer, sizeof aBuffer);
}

} // namespace tsl::Platform
