#include "Printer.h"

#include "GreetingMessage.h"

#include <tessel/ResultMessage.h>

#include <iostream>

void GreetingPrinter::Process(tsl::Message const & oMessage, tsl::Result &) const
{
    if (auto const * const pGreeting = dynamic_cast<GreetingMessage const *>(&oMessage))
        std::cout << pGreeting->GetText().s_str() << std::endl;
}

void FailurePrinter::Process(tsl::Message const & oMessage, tsl::Result &) const
{
    if (auto const * const pFailure = dynamic_cast<tsl::ResultMessage const *>(&oMessage))
        std::cerr << "greeter: " << pFailure->GetResult().GetText().s_str() << std::endl;
}
