#include <tessel/Support.h>

#include "GlobalApplicationIni.h"
#include "GlobalDebugSwitchRegistry.h"
#include "platform/ForcedEnd.h"

#include <tessel/DebugMessage.h>
#include <tessel/Exception.h>
#include <tessel/GlobalMessageDispatcher.h>
#include <tessel/OS.h>
#include <tessel/ResultMessage.h>

namespace tsl
{

GlobalMessageDispatcher & Support::GetAppDisp()
{
    return GlobalMessageDispatcher::Instance();
}

Result Support::DispatchMessage(Message const & oMessage)
{
    EndHereIfWanted(__builtin_return_address(0));
    if (!GlobalMessageDispatcher::IsAvailable())
        return Result();
    return GetAppDisp().Process(oMessage);
}

Result Support::DispatchMessage(Result const & oResult)
{
    EndHereIfWanted(__builtin_return_address(0));
    if (!GlobalMessageDispatcher::IsAvailable())
        return Result();
    return GetAppDisp().Process(ResultMessage(oResult));
}

Result Support::DispatchMessageA(Message const & oMessage)
{
    return DispatchMessage(oMessage);
}

Result Support::DispatchMessageA(Result const & oResult)
{
    return DispatchMessage(oResult);
}

Result Support::DispatchDebugMessage(
    char const * sIdentifier, String const & sText, char const * sFile, int iLine)
{
    EndHereIfWanted(__builtin_return_address(0));
    if (!GlobalMessageDispatcher::IsAvailable())
        return Result();

    DebugMessage oMessage;
    oMessage.SetText(sText);
    oMessage.SetFile(sFile);
    oMessage.SetLine(iLine);
    oMessage.SetIdentifier(sIdentifier);
    return GetAppDisp().Process(oMessage);
}

int Support::RegisterLogPoint(int * pLevel, char const * sIdentifier, char const * sFile, int iLine)
{
    if (!GlobalDebugSwitchRegistry::IsGone())
        return GlobalDebugSwitchRegistry::Instance().RegisterLogPoint(pLevel, sIdentifier, sFile, iLine);

    if (pLevel)
        *pLevel = 0;
    return 0;
}

IniFile const & Support::GetAppIni()
{
    return GlobalApplicationIni::Instance().GetIniFile();
}

String Support::GetAppIniFileName()
{
    String sName;
    Result oResult = OS::GetApplicationFileName(sName);
    if (oResult.IsError())
    {
        oResult.SetSource(__builtin_FILE(), __builtin_LINE());
        Exception::Throw(oResult);
    }
    return sName + ".ini";
}

} // namespace tsl
