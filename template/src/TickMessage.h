#pragma once

#include <tessel/Described.h>
#include <tessel/Message.h>

/// A tick with its number. The machine sends it to the program.
class TickMessage : public tsl::Described<TickMessage, tsl::Message>
{
public:
    TickMessage() = default;
    explicit TickMessage(int iNumber) : m_iNumber(iNumber) {}

    std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> GetConstIterator() const override;
    tsl::String & AddAsString(tsl::String & sText) const override;

    int GetNumber() const { return m_iNumber; }

protected:
    void DoCopy(tsl::Root const & oSource) override;

private:
    int m_iNumber = 0;
};
