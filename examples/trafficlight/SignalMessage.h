#pragma once

#include <tessel/Described.h>
#include <tessel/Message.h>
#include <tessel/ValueString.h>

/// A word to the crossing, such as "night", or from it, such as "Red".
class SignalMessage : public tsl::Described<SignalMessage, tsl::Message>
{
public:
    SignalMessage() = default;
    explicit SignalMessage(tsl::ValueString const & sWord) : m_sWord(sWord) {}

    tsl::ValueString const & GetWord() const { return m_sWord; }

    /// "Word"; this is what the log points of tasks and queues show.
    std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> GetConstIterator() const override;

protected:
    void DoCopy(tsl::Root const & oSource) override;

private:
    tsl::ValueString m_sWord{""};
};
