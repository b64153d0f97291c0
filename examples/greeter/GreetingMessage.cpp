#include "GreetingMessage.h"

namespace
{

class GreetingMessageConstIterator : public tsl::MessageConstIterator
{
public:
    explicit GreetingMessageConstIterator(GreetingMessage const & oMessage)
        : MessageConstIterator(2), m_oMessage(oMessage)
    {
    }

    char const * GetName() const override { return GetPosition() == 0 ? "Number" : "Text"; }

    tsl::Value const & GetValue() const override
    {
        if (GetPosition() == 0)
            return m_oMessage.GetNumber();
        return m_oMessage.GetText();
    }

private:
    GreetingMessage const & m_oMessage;
};

} // namespace

GreetingMessage::GreetingMessage(tsl::ValueInt32 const & iNumber, tsl::ValueString const & sText)
    : m_iNumber(iNumber), m_sText(sText)
{
}

tsl::ClassDescription const & GreetingMessage::GetClassDesc() const
{
    return GetStaticClassDesc();
}

tsl::ClassDescription const & GreetingMessage::GetStaticClassDesc()
{
    static tsl::ClassDescription const & oDescription = tsl::DescribeClass<GreetingMessage>(
        &tsl::Message::GetStaticClassDesc(), tsl::ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

tsl::Root * GreetingMessage::CreateNew()
{
    return new GreetingMessage;
}

std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> GreetingMessage::GetConstIterator() const
{
    return std::make_unique<GreetingMessageConstIterator>(*this);
}

void GreetingMessage::DoCopy(tsl::Root const & oSource)
{
    *this = static_cast<GreetingMessage const &>(oSource);
}
