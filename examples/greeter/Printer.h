#pragma once

#include <tessel/PlainProcessor.h>

/// Prints greetings to the standard output.
class GreetingPrinter : public tsl::PlainProcessor
{
public:
    void Process(tsl::Message const & oMessage, tsl::Result & oResult) const override;
};
