#include "Printer.h"

#include "GreetingMessage.h"

#include <iostream>

void GreetingPrinter::Process(tsl::Message const & oMessage, tsl::Result &) const
{
    if (auto const * const pGreeting = dynamic_cast<GreetingMessage const *>(&oMessage))
        std::cout << pGreeting->GetText().s_str() << std::endl;
}
