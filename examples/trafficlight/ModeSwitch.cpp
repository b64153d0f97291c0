#include "ModeSwitch.h"

#include "SignalMessage.h"

#include <tessel/IniFile.h>
#include <tessel/Support.h>

namespace
{

constexpr char const * MODE_NAMES[] = {"day", "night", "off"};

int ReadFirstMode()
{
    int iMode = MODE_DAY;
    tsl::String sName;
    if (tsl::Support::GetAppIni().GetString("Crossing", "Mode", sName))
        ModeSwitch::FindMode(sName, iMode);
    return iMode;
}

} // namespace

bool ModeSwitch::FindMode(tsl::ValueString const & sName, int & iMode)
{
    for (int const i : {MODE_DAY, MODE_NIGHT, MODE_OFF})
    {
        if (sName == MODE_NAMES[i])
        {
            iMode = i;
            return true;
        }
    }
    return false;
}

int ModeSwitch::DoProcess()
{
    int const iMode = GetVar(VAR_WANTED_MODE, ReadFirstMode());
    SetVar(VAR_MODE, iMode);
    Send(SignalMessage(MODE_NAMES[iMode]));
    return iMode;
}
