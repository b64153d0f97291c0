#pragma once

#include <tessel/Tessel.h>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <string>

namespace tsltest
{

/// A failure as "code text", with " <- code text" for each one of its history.
inline std::string Tell(tsl::Result const & oResult)
{
    std::string sText = std::to_string(oResult.GetErrorCode()) + ' ' + oResult.GetText().s_str();
    for (int i = 0; i < oResult.GetHistorySize(); ++i)
        sText += " <- " + Tell(oResult.GetHistory(i).GetWithoutHistory());
    return sText;
}

/// A message class directly below tsl::Message, with a number that tells copies from other objects.
class NumberMessage : public tsl::Described<NumberMessage, tsl::Message>
{
public:
    explicit NumberMessage(int iNumber_ = 0) : iNumber(iNumber_) {}

    std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> GetConstIterator() const override
    {
        return tsl::Message::GetConstIterator();
    }

    tsl::String & AddAsString(tsl::String & s) const override { return s << "note " << iNumber; }

    int iNumber;

protected:
    void DoCopy(tsl::Root const & oSource) override
    {
        iNumber = static_cast<NumberMessage const &>(oSource).iNumber;
    }
};

/// A message class that stands one level too deep for a bus.
class DeepMessage : public tsl::Described<DeepMessage, NumberMessage>
{
};

/// A processor that does what the test says.
class TestProcessor : public tsl::PlainProcessor
{
public:
    using Work = std::function<void(tsl::Message const &, tsl::Result &)>;

    explicit TestProcessor(Work fWork = {}) : m_fWork(std::move(fWork)) {}

    void SetWork(Work fWork) { m_fWork = std::move(fWork); }

    /// How often it was called, and how often it was told of the end of a bus.
    int GetCalls() const { return m_iCalls; }
    int GetDestructions() const { return m_iDestructions; }

    void Process(tsl::Message const & oMessage, tsl::Result & oResult) const override
    {
        ++m_iCalls;
        if (m_fWork)
            m_fWork(oMessage, oResult);
    }

    void HandlerDestruction() const override { ++m_iDestructions; }

private:
    Work m_fWork;
    mutable std::atomic<int> m_iCalls{0};
    mutable std::atomic<int> m_iDestructions{0};
};

/// A processor that listens to the global bus for as long as it lives.
class BusListener : public TestProcessor
{
public:
    BusListener(unsigned int iType, Work fWork) : TestProcessor(std::move(fWork))
    {
        if (tsl::Support::GetAppDisp().Register(*this, {iType}).IsError())
            std::abort();
    }
    ~BusListener() override { tsl::Support::GetAppDisp().Unregister(*this); }
};

} // namespace tsltest
