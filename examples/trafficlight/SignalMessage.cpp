#include "SignalMessage.h"

#include <tessel/NamedValueIterator.h>

std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> SignalMessage::GetConstIterator() const
{
    static constexpr tsl::NamedGetter<SignalMessage> aRows[] = {
        {"Word", tsl::GetMember<&SignalMessage::m_sWord>},
    };
    return std::make_unique<tsl::FieldIterator<SignalMessage>>(*this, aRows);
}

void SignalMessage::DoCopy(tsl::Root const & oSource)
{
    *this = static_cast<SignalMessage const &>(oSource);
}
