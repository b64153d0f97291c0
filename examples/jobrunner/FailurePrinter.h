#pragma once

#include "Processor.h"

/// Prints failures with their history to the standard error stream.
class FailurePrinter : public Processor
{
public:
    void Process(tsl::Message const & oMessage, tsl::Result & oResult) const override;
};
