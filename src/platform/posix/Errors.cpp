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
    // The lookup of the text may take a lock of the runtime library (translations).
    NoKillScope const oScope;
    char aBuffer[256];
    return ::strerror_r(iError, aBuffer, sizeof aBuffer);
}

} // namespace tsl::Platform
