#pragma once

#include <tessel/MessageDispatcher.h>

/// A processor that prints: a configuration, and nothing to open or to close.
class Printer : public tsl::MessageProcessor
{
public:
    tsl::MessageProcessorConfig const & GetConfig() const override { return m_oConfig; }
    tsl::Result SetConfig(tsl::MessageProcessorConfig const & oConfig) override;
    tsl::Result Open() override { return tsl::Result(); }
    void Close() override {}

protected:
    void DoCopy(tsl::Root const &) override {}

private:
    tsl::MessageDispatcherConfig m_oConfig;
};

/// Prints greetings to the standard output.
class GreetingPrinter : public Printer
{
public:
    void Process(tsl::Message const & oMessage, tsl::Result & oResult) const override;
};

/// Prints failures to the standard error stream.
class FailurePrinter : public Printer
{
public:
    void Process(tsl::Message const & oMessage, tsl::Result & oResult) const override;
};
