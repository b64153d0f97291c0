#include "TickMessage.h"

std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> TickMessage::GetConstIterator() const
{
    return Message::GetConstIterator();
}

tsl::String & TickMessage::AddAsString(tsl::String & sText) const
{
    return sText << "tick " << m_iNumber;
}

void TickMessage::DoCopy(tsl::Root const & oSource)
{
    *this = static_cast<TickMessage const &>(oSource);
}
