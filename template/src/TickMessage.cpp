#include "TickMessage.h"

tsl::ClassDescription const & TickMessage::GetStaticClassDesc()
{
    static tsl::ClassDescription const & oDescription = tsl::DescribeClass<TickMessage>(
        &tsl::Message::GetStaticClassDesc(), tsl::ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

tsl::Root * TickMessage::CreateNew()
{
    return new TickMessage;
}

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
