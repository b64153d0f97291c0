#include "SignalMessage.h"

namespace
{

class SignalMessageConstIterator : public tsl::MessageConstIterator
{
public:
    explicit SignalMessageConstIterator(SignalMessage const & oMessage)
        : MessageConstIterator(1), m_oMessage(oMessage)
    {
    }

    char const * GetName() const override { return "Word"; }
    tsl::Value const & GetValue() const override { return m_oMessage.GetWord(); }

private:
    SignalMessage const & m_oMessage;
};

} // namespace

tsl::ClassDescription const & SignalMessage::GetClassDesc() const
{
    return GetStaticClassDesc();
}

tsl::ClassDescription const & SignalMessage::GetStaticClassDesc()
{
    static tsl::ClassDescription const & oDescription = tsl::DescribeClass<SignalMessage>(
        &tsl::Message::GetStaticClassDesc(), tsl::ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

tsl::Root * SignalMessage::CreateNew()
{
    return new SignalMessage;
}

std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> SignalMessage::GetConstIterator() const
{
    return std::make_unique<SignalMessageConstIterator>(*this);
}

void SignalMessage::DoCopy(tsl::Root const & oSource)
{
    *this = static_cast<SignalMessage const &>(oSource);
}
