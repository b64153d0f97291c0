#pragma once

#include <tessel/Tessel.h>

#include <atomic>
#include <functional>
#include <utility>
#include <vector>

namespace tsltest
{

class ClientConfig : public tsl::MessageDispatcherClientConfig
{
protected:
    void DoCopy(tsl::Root const &) override {}
};

/// A client of a bus that does what the test says.
class TestClient : public tsl::MessageDispatcherClient
{
public:
    TestClient(
        tsl::MessageDispatcher & oBus, std::vector<unsigned int> const & vTypes,
        std::function<void()> fWork = [] {})
        : MessageDispatcherClient(oBus), m_fWork(std::move(fWork))
    {
        m_oConfig.SetMessageTypes(vTypes);
    }
    ~TestClient() override { TestClient::Close(); }

    void Process(tsl::Message const &, tsl::Result &) const override
    {
        ++iCalls;
        m_fWork();
    }
    tsl::MessageProcessorConfig const & GetConfig() const override { return m_oConfig; }
    tsl::Result SetConfig(tsl::MessageProcessorConfig const &) override { return tsl::Result(); }

    mutable std::atomic<int> iCalls{0};

protected:
    void DoCopy(tsl::Root const &) override {}

private:
    std::function<void()> m_fWork;
    ClientConfig m_oConfig;
};

} // namespace tsltest
