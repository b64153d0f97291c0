#pragma once

#include <tessel/Described.h>
#include <tessel/Message.h>
#include <tessel/ValueInt32.h>
#include <tessel/ValueString.h>

/// A greeting: its number and its text.
class GreetingMessage : public tsl::Described<GreetingMessage, tsl::Message>
{
public:
    GreetingMessage() = default;
    GreetingMessage(tsl::ValueInt32 const & iNumber, tsl::ValueString const & sText);

    tsl::ValueInt32 const & GetNumber() const { return m_iNumber; }
    tsl::ValueString const & GetText() const { return m_sText; }

    /// The elements are "Number" and "Text", as the log file shows them.
    std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> GetConstIterator() const override;

protected:
    void DoCopy(tsl::Root const & oSource) override;

private:
    tsl::ValueInt32 m_iNumber;
    tsl::ValueString m_sText;
};
