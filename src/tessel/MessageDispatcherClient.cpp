#include <tessel/MessageDispatcherClient.h>

#include "MessageDispatcherPrivate.h"

#include <atomic>
#include <memory>
#include <utility>

namespace tsl
{

template<>
constexpr ClassSource CLASS_SOURCE<MessageDispatcherClientConfig>{};
template<>
ClassDescription const & Described<MessageDispatcherClientConfig, MessageProcessorConfig,
    ClassDescription::eAbstract, MessageProcessor>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

struct TSL_HIDDEN MessageDispatcherClient::Private
{
    explicit Private(std::shared_ptr<MessageDispatcher::Private> pTheBus) : pBus(std::move(pTheBus)) {}

    void Close(MessageProcessor const & oClient);

    std::shared_ptr<MessageDispatcher::Private> const pBus;
    std::atomic<bool> bRegistered{false};
};

void MessageDispatcherClient::Private::Close(MessageProcessor const & oClient)
{
    if (!bRegistered.load(std::memory_order_acquire))
    {
        // It may have been closed from inside a delivery that still runs.
        pBus->AwaitCalls(oClient);
        return;
    }
    pBus->Unregister(oClient);
    bRegistered.store(false, std::memory_order_release);
}

MessageDispatcherClient::MessageDispatcherClient(MessageDispatcher & oDispatcher)
    : m(std::make_unique<Private>(oDispatcher.m->shared_from_this()))
{
}

MessageDispatcherClient::MessageDispatcherClient(MessageDispatcherClient const & oSource)
    : Described(oSource), m(std::make_unique<Private>(oSource.m->pBus))
{
    m->bRegistered.store(oSource.m->bRegistered.load(std::memory_order_relaxed), std::memory_order_relaxed);
}

template<>
constexpr ClassSource CLASS_SOURCE<MessageDispatcherClient>{};
template<>
ClassDescription const &
Described<MessageDispatcherClient, MessageProcessor, ClassDescription::eAbstract>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

MessageDispatcherClient::~MessageDispatcherClient()
{
    // Also if it is closed: a failed Open may have registered it for some types.
    m->pBus->Unregister(*this);
}

Result MessageDispatcherClient::Open()
{
    if (m->pBus->bEnded.load(std::memory_order_relaxed))
        return MakeResult(ERR::eNotAllowed, "The bus of this client has ended.");

    Result oResult = m->pBus->Register(*this, GetConfig().GetMessageTypes());
    m->bRegistered.store(oResult.IsOk(), std::memory_order_release);
    return oResult;
}

void MessageDispatcherClient::Close()
{
    m->Close(*this);
}

} // namespace tsl
