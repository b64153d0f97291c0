#pragma once

#include <tessel/Described.h>
#include <tessel/Message.h>

/// The progress of the work. The machine sends it to the main thread.
class ProgressMessage : public tsl::Described<ProgressMessage, tsl::Message>
{
public:
    ProgressMessage() = default;
    ProgressMessage(int iDone, int iParts) : m_iDone(iDone), m_iParts(iParts) {}

    std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> GetConstIterator() const override;
    tsl::String & AddAsString(tsl::String & sText) const override;

    int GetDone() const { return m_iDone; }
    int GetParts() const { return m_iParts; }

protected:
    void DoCopy(tsl::Root const & oSource) override;

private:
    int m_iDone = 0;
    int m_iParts = 0;
};

/// Asks the machine to stop before the next part. The main thread sends it to the machine.
class StopMessage : public tsl::Described<StopMessage, tsl::Message>
{
public:
    std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> GetConstIterator() const override;
    tsl::String & AddAsString(tsl::String & sText) const override { return sText << "stop"; }

protected:
    void DoCopy(tsl::Root const &) override {}
};
