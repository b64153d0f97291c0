#pragma once

#include <tessel/MessageDispatcher.h>

/// A message processor that prints each failure, with what has caused it, as a line to the standard error stream.
class FailurePrinter : public tsl::MessageProcessor
{
public:
    void Process(tsl::Message const & oMessage, tsl::Result & oResult) const override;

    tsl::MessageProcessorConfig const & GetConfig() const override { return m_oConfig; }
    tsl::Result SetConfig(tsl::MessageProcessorConfig const & oConfig) override;
    tsl::Result Open() override { return tsl::Result(); }
    void Close() override {}

protected:
    void DoCopy(tsl::Root const &) override {}

private:
    tsl::MessageDispatcherConfig m_oConfig;
};
