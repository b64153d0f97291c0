#include <tesselkit/MessageList.h>

#include <tessel/ResultMessage.h>

#include <utility>

namespace tsl
{

void MessageList::Add(Message const & oMessage)
{
    Add(std::unique_ptr<Message>(static_cast<Message *>(oMessage.GetCopy())));
}

void MessageList::Add(std::unique_ptr<Message> pMessage)
{
    m_vMessages.push_back(std::move(pMessage));
}

std::vector<Result> MessageList::GetResults() const
{
    std::vector<Result> vResults;
    for (ResultMessage const * const pMessage : GetAll<ResultMessage>())
        vResults.push_back(pMessage->GetResult());
    return vResults;
}

String MessageList::GetText() const
{
    String sText;
    for (std::unique_ptr<Message> const & pMessage : m_vMessages)
    {
        if (auto const * const pEnd = dynamic_cast<ResultMessage const *>(pMessage.get()))
            sText << (pEnd->GetResult().IsOk() ? String("success") : pEnd->GetResult().GetTextWithCauses());
        else
            pMessage->AddAsString(sText);
        sText << '\n';
    }
    return sText;
}

} // namespace tsl
