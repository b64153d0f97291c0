#pragma once

#include <tessel/MessageDispatcher.h>

/// What all processors of this program have alike: a configuration, and nothing to open or to close.
class Processor : public tsl::MessageProcessor
{
public:
    tsl::MessageProcessorConfig const & GetConfig() const override { return m_oConfig; }
    tsl::Result SetConfig(tsl::MessageProcessorConfig const & oConfig) override
    {
        m_oConfig.Set(oConfig);
        return tsl::Result();
    }
    tsl::Result Open() override { return tsl::Result(); }
    void Close() override {}

protected:
    void DoCopy(tsl::Root const &) override {}

private:
    tsl::MessageDispatcherConfig m_oConfig;
};
