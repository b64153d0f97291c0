#pragma once

#include <tessel/PlainProcessor.h>

/// A message processor that prints each failure with its causes as a line to the standard error stream.
class FailurePrinter : public tsl::PlainProcessor
{
public:
    void Process(tsl::Message const & oMessage, tsl::Result & oResult) const override;
};
