// Runs the machine step by step, without the program and without waiting.

#include "Ticker.h"
#include "TickMessage.h"

#include <tessel/ResultMessage.h>
#include <tessel/TaskContext.h>

#include <iostream>
#include <memory>

int main()
{
    tsl::TaskContext oContext(new Ticker(2));
    tsl::String sSent;
    for (int i = 0; i < 3; ++i)
    {
        oContext.Process();
        while (std::unique_ptr<tsl::Message> const pMessage{oContext.ReadMessage()})
            pMessage->AddAsString(sSent) << '\n';
    }

    std::cout << sSent.c_str();
    return sSent.Find("tick 1\ntick 2\n") == 0 ? 0 : 1;
}
