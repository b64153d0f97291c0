#include "GreetingMessage.h"

#include <tessel/NamedValueIterator.h>

GreetingMessage::GreetingMessage(tsl::ValueInt32 const & iNumber, tsl::ValueString const & sText)
    : m_iNumber(iNumber), m_sText(sText)
{
}

std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> GreetingMessage::GetConstIterator() const
{
    static constexpr tsl::NamedGetter<GreetingMessage> aRows[] = {
        {"Number", tsl::GetMember<&GreetingMessage::m_iNumber>},
        {"Text", tsl::GetMember<&GreetingMessage::m_sText>},
    };
    return std::make_unique<tsl::FieldIterator<GreetingMessage>>(*this, aRows);
}

void GreetingMessage::DoCopy(tsl::Root const & oSource)
{
    *this = static_cast<GreetingMessage const &>(oSource);
}
