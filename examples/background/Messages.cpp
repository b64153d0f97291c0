#include "Messages.h"

// The only element is one text, which is easier to read than three numbers.
std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> ProgressMessage::GetConstIterator() const
{
    return Message::GetConstIterator();
}

tsl::String & ProgressMessage::AddAsString(tsl::String & sText) const
{
    return sText << m_iDone << " of " << m_iParts;
}

void ProgressMessage::DoCopy(tsl::Root const & oSource)
{
    *this = static_cast<ProgressMessage const &>(oSource);
}

std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> StopMessage::GetConstIterator() const
{
    return Message::GetConstIterator();
}
