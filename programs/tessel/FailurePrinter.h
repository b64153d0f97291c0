#pragma once

#include <tessel/PlainProcessor.h>

/// A message processor that prints each failure, with what has caused it, as a line to the standard error stream.
class FailurePrinter : public tsl::PlainProcessor
{
public:
    void Process(tsl::Message const & oMessage, tsl::Result & oResult) const override;
};
