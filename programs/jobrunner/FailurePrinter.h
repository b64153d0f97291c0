#pragma once

#include <tessel/PlainProcessor.h>

/// Prints failures with their history to the standard error stream.
class FailurePrinter : public tsl::PlainProcessor
{
public:
    void Process(tsl::Message const & oMessage, tsl::Result & oResult) const override;
};
