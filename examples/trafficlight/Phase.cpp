#include "Phase.h"

#include "ModeSwitch.h"
#include "SignalMessage.h"

#include <tessel/IniFile.h>
#include <tessel/Support.h>

#include <algorithm>
#include <memory>

int Phase::DoTaskEntry()
{
    // A local variable: amber is at two places of the tree, by day and by night, and each has a count of its own.
    int const iCount = GetLocalVar("Count", 0) + 1;
    SetLocalVar("Count", iCount);
    Send(SignalMessage(GetTaskName() + " #" + iCount));
    return TR_REMAIN;
}

int Phase::DoProcess()
{
    TakeSignals();
    if (m_iSteps < GetDuration())
    {
        ++m_iSteps;
        return TR_REMAIN;
    }
    return IsModeChangeWanted() ? RESULT_MODE_CHANGE : TR_PROCEED;
}

int Phase::GetDuration() const
{
    int iDuration = 1;
    if (!GetSimulationMode(0))
        tsl::Support::GetAppIni().GetInt32("Durations", GetTaskName(), iDuration);

    // If no phase had a duration, a step would never end.
    return std::max(iDuration, 1);
}

void Phase::TakeSignals()
{
    while (std::unique_ptr<tsl::Message> const pMessage{Receive(0)})
    {
        if (auto const * const pSignal = dynamic_cast<SignalMessage const *>(pMessage.get()))
            Obey(pSignal->GetWord());
    }
}

void Phase::Obey(tsl::ValueString const & sWord)
{
    int iMode = MODE_OFF;
    if (ModeSwitch::FindMode(sWord, iMode))
        SetVar(VAR_WANTED_MODE, iMode);
    else if (sWord == "pedestrian")
        SetVar(VAR_PEDESTRIAN, 1);
    else
        Send(SignalMessage("What does " + sWord + " mean?"));
}

bool Phase::IsModeChangeWanted() const
{
    int const iMode = GetVar(VAR_MODE, MODE_DAY);
    return GetVar(VAR_WANTED_MODE, iMode) != iMode;
}

void Green::DoTaskExit()
{
    SetVar(VAR_PEDESTRIAN, 0);
}

int Green::GetDuration() const
{
    return GetVar(VAR_PEDESTRIAN, 0) == 1 ? 1 : Phase::GetDuration();
}
