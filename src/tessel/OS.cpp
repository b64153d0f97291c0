#include <tessel/OS.h>

#include "platform/Clock.h"
#include "platform/Errors.h"
#include "platform/Files.h"
#include "platform/Identity.h"

#include <tessel/String.h>

#include <string_view>

namespace tsl
{

static constexpr std::string_view PROGRAM_ENDING = ".exe";

void OS::Sleep(int iDuration)
{
    Platform::Sleep(iDuration);
}

int OS::GetProcessId()
{
    return Platform::GetProcessId();
}

unsigned long OS::GetThreadId()
{
    return Platform::GetThreadId();
}

Result OS::FormatError(int iError)
{
    return Result(iError, Platform::GetErrorText(iError), Result::eCategoryDefault);
}

Result OS::GetLastError()
{
    return FormatError(Platform::GetLastError());
}

Result OS::GetApplicationFileName(String & sName)
{
    std::string sPath;
    if (int const iError = Platform::GetProgramPath(sPath))
        return MakeResult(ERR::eSubsystem, "Cannot identify ApplicationFileName.", FormatError(iError));

    std::string sFile = sPath.substr(sPath.rfind(Platform::PATH_SEPARATOR) + 1);
    if (sFile.ends_with(PROGRAM_ENDING))
        sFile.resize(sFile.size() - PROGRAM_ENDING.size());
    sName = sFile;
    return Result();
}

Result OS::GetApplicationFilePath(String & sPath)
{
    std::string sProgram;
    if (int const iError = Platform::GetProgramPath(sProgram))
        return MakeResult(ERR::eSubsystem, "Cannot identify ApplicationFilePath.", FormatError(iError));

    sPath = sProgram.substr(0, sProgram.rfind(Platform::PATH_SEPARATOR));
    return Result();
}

Result OS::GetWorkingDirectory(String & sDirectory)
{
    std::string sPath;
    if (int const iError = Platform::GetWorkingDirectory(sPath))
        return Result(ERR::eAccessDenied, "Cannot identify working dir.", FormatError(iError));

    sDirectory = sPath;
    return Result();
}

} // namespace tsl
