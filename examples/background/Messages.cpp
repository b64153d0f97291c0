#include "Messages.h"

tsl::ClassDescription const & ProgressMessage::GetStaticClassDesc()
{
    static tsl::ClassDescription const & oDescription = tsl::DescribeClass<ProgressMessage>(
        &tsl::Message::GetStaticClassDesc(), tsl::ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

tsl::Root * ProgressMessage::CreateNew()
{
    return new ProgressMessage;
}

// It shows as one text, which says more than its fields would one by one.
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

tsl::ClassDescription const & StopMessage::GetStaticClassDesc()
{
    static tsl::ClassDescription const & oDescription = tsl::DescribeClass<StopMessage>(
        &tsl::Message::GetStaticClassDesc(), tsl::ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

tsl::Root * StopMessage::CreateNew()
{
    return new StopMessage;
}

std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> StopMessage::GetConstIterator() const
{
    return Message::GetConstIterator();
}
