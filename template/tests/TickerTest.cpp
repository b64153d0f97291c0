// Checks the table of the machine and runs it step by step, without the program and without waiting.

#include "Ticker.h"

#include <tesselkit/MachineCheck.h>
#include <tesselkit/MachineDriver.h>

#include <iostream>

int main()
{
    tsl::MachineDriver oDriver(new Ticker(2));
    bool const bEnded = oDriver.Run(3);
    tsl::String const sSent = oDriver.TakeMessages().GetText();

    Ticker oTicker(1);
    tsl::String const sFaults = tsl::MachineCheck::Run(oTicker).GetTextWithCauses();

    std::cout << sSent.c_str() << sFaults.c_str();
    return bEnded && sSent == "tick 1\ntick 2\nsuccess\n" && sFaults.IsEmpty() ? 0 : 1;
}
