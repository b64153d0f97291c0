#pragma once

#include <tessel/MessageDispatcher.h>

/// A processor that prints what it gets to one of the standard streams: this one prints greetings.
class GreetingPrinter : public tsl::MessageProcessor
{
public:
    tsl::MessageProcessorConfig const & GetConfig() const override { return m_oConfig; }
    tsl::Result SetConfig(tsl::MessageProcessorConfig const & oConfig) override;
    tsl::Result Open() override { return tsl::Result(); }
    void Close() override {}

    void Process(tsl::Message const & oMessage, tsl::Result & oResult) const override;

protected:
    void DoCopy(tsl::Root const &) override {}

private:
    tsl::MessageDispatcherConfig m_oConfig;
};

/// And this one prints failures.
class FailurePrinter : public GreetingPrinter
{
public:
    void Process(tsl::Message const & oMessage, tsl::Result & oResult) const override;
};
