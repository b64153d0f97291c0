#pragma once

#include <tessel/Described.h>
#include <tessel/Message.h>
#include <tessel/ValueString.h>

/// A word that is sent to the crossing, such as "night", or by it, such as "Red".
class SignalMessage : public tsl::Described<SignalMessage, tsl::Message>
{
public:
    SignalMessage() = default;
    explicit SignalMessage(tsl::ValueString const & sWord) : m_sWord(sWord) {}

    tsl::ValueString const & GetWord() const { return m_sWord; }

    /// The element is "Word", as the log points of tasks and queues show it.
    std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> GetConstIterator() const override;

protected:
    void DoCopy(tsl::Root const & oSource) override;

private:
    tsl::ValueString m_sWord{""};
};
