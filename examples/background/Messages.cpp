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
    return sText << m_iDone << " of " << m_iParts << (m_bFinished ? ", finished" : "");
}

void ProgressMessage::DoCopy(tsl::Root const & oSource)
{
    auto const & oProgress = static_cast<ProgressMessage const &>(oSource);
    m_iDone = oProgress.m_iDone;
    m_iParts = oProgress.m_iParts;
    m_bFinished = oProgress.m_bFinished;
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
