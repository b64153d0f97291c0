#include <tessel/ErrorCodes.h>

namespace tsl
{

char const * ERR::GetErrorText(int iErrorCode)
{
    switch (iErrorCode)
    {
    case eNoError:
        return "No error";
    case eAccessDenied:
        return "Access denied";
    case eBadData:
        return "Bad data";
    case eNotAllowed:
        return "Operation (in current state) not allowed";
    case eOutOfRange:
        return "Out of range";
    case eNotFound:
        return "Not found";
    case eInternal:
        return "Internal programm error";
    case eNoMoreData:
        return "No more data available";
    case eMoreData:
        return "There is more data available";
    case eSubsystem:
        return "Error from subsystem";
    case eTimeout:
        return "Timeout occured";
    case eTerminated:
        return "Terminated";
    default:
        return "Unknown error";
    }
}

} // namespace tsl
