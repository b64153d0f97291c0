#include <tessel/Pipe.h>

#include <tessel/LogPoint.h>

namespace tsl
{

template class DefaultPipe<String, CriticalSectionMutex, CloneByCopyConstructor<String>>;
template class DefaultPipe<Message, CriticalSectionMutex, CloneByGetCopy<Message>>;

PipeDebMessage::PipeDebMessage(String const & sName) : m_sName(sName) {}

void PipeDebMessage::Clear()
{
    Trace("Pipe", [&] { return m_sName + " Clear"; });
    DefaultPipe::Clear();
}

void PipeDebMessage::Send(Message const & oMessage)
{
    DefaultPipe::Send(oMessage);
    Trace("Pipe",
        [&]
        {
            String sText = m_sName + " Send ";
            return oMessage.AddAsString(sText) + "; New size=" + GetSize();
        });
}

Message * PipeDebMessage::Receive()
{
    std::unique_ptr<Message> pMessage(DefaultPipe::Receive());
    if (!pMessage)
    {
        Trace("Pipe", [&] { return m_sName + " Received nothing."; });
        return nullptr;
    }

    Trace("Pipe",
        [&]
        {
            String sText = m_sName + " Received ";
            return pMessage->AddAsString(sText) + "; New size=" + GetSize();
        });
    return pMessage.release();
}

} // namespace tsl
