#pragma once

#include <tessel/Message.h>

namespace tsl
{

/// Appends name='value' of each element of a message, separated by "; ".
/// @param fAppendValue appends an element's value to the text
template<class AppendValue>
void AppendElements(Message const & oMessage, String & sText, AppendValue fAppendValue)
{
    auto const pElement = oMessage.GetConstIterator();
    pElement->Begin();
    while (!pElement->IsEnd())
    {
        sText << pElement->GetName() << "='";
        fAppendValue(pElement->GetValue());
        pElement->Next();
        sText << (pElement->IsEnd() ? "'" : "'; ");
    }
}

/// Returns the text of a message, as AddAsString appends it.
inline String GetMessageText(Message const & oMessage)
{
    String sText;
    oMessage.AddAsString(sText);
    return sText;
}

} // namespace tsl
