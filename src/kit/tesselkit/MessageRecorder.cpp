#include <tesselkit/MessageRecorder.h>

#include <tessel/Exception.h>
#include <tessel/GlobalMessageDispatcher.h>
#include <tessel/Support.h>

#include <chrono>
#include <utility>

namespace tsl
{

namespace
{

/// Leaves the processor unregistered if one of the types is wrong.
template<class Bus>
void RegisterOrThrow(
    Bus & oBus, MessageProcessor const & oProcessor, std::vector<unsigned int> const & vTypes)
{
    Result const oResult = oBus.Register(oProcessor, vTypes);
    if (oResult.IsOk())
        return;
    oBus.Unregister(oProcessor);
    Exception::Throw(oResult);
}

} // namespace

MessageRecorder::MessageRecorder(std::vector<unsigned int> const & vTypes) : m_pBus(nullptr)
{
    RegisterOrThrow(Support::GetAppDisp(), *this, vTypes);
}

MessageRecorder::MessageRecorder(MessageDispatcher & oBus, std::vector<unsigned int> const & vTypes)
    : m_pBus(&oBus)
{
    RegisterOrThrow(oBus, *this, vTypes);
}

MessageRecorder::~MessageRecorder()
{
    if (std::unique_lock const oLock(m_oMutex); m_bBusEnded)
        return;
    if (m_pBus)
        m_pBus->Unregister(*this);
    else
        Support::GetAppDisp().Unregister(*this);
}

int MessageRecorder::GetCount() const
{
    std::lock_guard const oLock(m_oMutex);
    return m_oMessages.GetCount();
}

bool MessageRecorder::WaitForCount(int iCount, int iTimeout) const
{
    std::unique_lock oLock(m_oMutex);
    return m_oArrived.wait_for(
        oLock, std::chrono::milliseconds(iTimeout), [&] { return m_oMessages.GetCount() >= iCount; });
}

MessageList MessageRecorder::Take()
{
    std::lock_guard const oLock(m_oMutex);
    return std::exchange(m_oMessages, MessageList());
}

void MessageRecorder::Process(Message const & oMessage, Result &) const
{
    // The copy is made outside the lock, since it runs code of the message's class.
    std::unique_ptr<Message> pCopy(static_cast<Message *>(oMessage.GetCopy()));
    std::lock_guard const oLock(m_oMutex);
    m_oMessages.Add(std::move(pCopy));
    m_oArrived.notify_all();
}

void MessageRecorder::HandlerDestruction() const
{
    std::lock_guard const oLock(m_oMutex);
    m_bBusEnded = true;
}

} // namespace tsl
