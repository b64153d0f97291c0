#include <tessel/MessageDispatcher.h>

#include "DispatcherEnd.h"
#include "ProcessorList.h"

#include <tessel/Assertion.h>
#include <tessel/Exception.h>
#include <tessel/Locks.h>
#include <tessel/Message.h>
#include <tessel/ScopedLock.h>
#include <tessel/String.h>

#include <algorithm>
#include <atomic>
#include <map>
#include <utility>

namespace tsl
{

namespace
{

/// The lists by message type. Lists come and never go, so that a look-up is an array index and
/// needs no lock.
class ProcessorTable
{
public:
    /// The list of the type, or null.
    ProcessorList * Find(unsigned int iType) const
    {
        Entries const * const pEntries = m_pEntries.load(std::memory_order_acquire);
        if (!pEntries || iType >= pEntries->size())
            return nullptr;
        return (*pEntries)[iType].load(std::memory_order_acquire);
    }

    /// One past the largest type that there may be a list for.
    unsigned int GetSize() const
    {
        Entries const * const pEntries = m_pEntries.load(std::memory_order_acquire);
        return pEntries ? static_cast<unsigned int>(pEntries->size()) : 0;
    }

    /// The list of the type, made if there is none. One thread at a time.
    ProcessorList & Demand(unsigned int iType)
    {
        std::unique_ptr<ProcessorList> & pList = m_oLists[iType];
        if (!pList)
        {
            if (iType >= GetSize())
                Grow(iType + std::size_t{1});
            pList = std::make_unique<ProcessorList>();
            (*m_vTables.back())[iType].store(pList.get(), std::memory_order_release);
        }
        return *pList;
    }

    template<class Call>
    void ForEach(Call fCall) const
    {
        for (unsigned int iType = 0; iType < GetSize(); ++iType)
            if (ProcessorList * const pList = Find(iType))
                fCall(iType, *pList);
    }

private:
    using Entries = std::vector<std::atomic<ProcessorList *>>;

    void Grow(std::size_t iSize)
    {
        // At least twice as long, so that all tables together stay in proportion to the last.
        auto pGrown = std::make_unique<Entries>(std::max<std::size_t>(iSize, std::size_t{2} * GetSize()));
        for (unsigned int iType = 0; iType < GetSize(); ++iType)
            (*pGrown)[iType].store(Find(iType), std::memory_order_relaxed);
        m_vTables.push_back(std::move(pGrown));
        m_pEntries.store(m_vTables.back().get(), std::memory_order_release);
    }

    std::atomic<Entries const *> m_pEntries{nullptr};

    // The last one is in use; the former ones stay, since another thread may be looking at one.
    std::vector<std::unique_ptr<Entries>> m_vTables;
    std::map<unsigned int, std::unique_ptr<ProcessorList>> m_oLists;
};

bool IsMessageType(unsigned int iType)
{
    ClassDescription const * const pDescription = ClassRepository::Instance().GetClassDescription(iType);
    return pDescription && pDescription->IsDerivedClass(Message::GetStaticClassDesc());
}

} // namespace

/// The bus itself, which its dispatcher objects and its clients share. It ends with the last dispatcher; what
/// a client then still has is empty.
struct TSL_HIDDEN MessageDispatcher::Private : std::enable_shared_from_this<MessageDispatcher::Private>
{
    /// What the dispatcher objects own.
    struct Life
    {
        ~Life() { pBus->End(); }

        std::shared_ptr<Private> pBus = std::make_shared<Private>();
    };

    static std::shared_ptr<Private> Make();

    Result Register(MessageProcessor const & oProcessor, std::vector<unsigned int> const & vTypes);
    void Unregister(MessageProcessor const & oProcessor);
    void AwaitCalls(MessageProcessor const & oProcessor);
    void Deliver(unsigned int iType, Message const & oMessage, Result & oResult) const;
    void End();

    ProcessorTable oTable;
    MessageDispatcherConfig oConfig;
    std::atomic<bool> bEnded{false};

    // For changes of the table.
    ReaderWriterMutex oLock;
};

std::shared_ptr<MessageDispatcher::Private> MessageDispatcher::Private::Make()
{
    auto const pLife = std::make_shared<Life>();
    return {pLife, pLife->pBus.get()};
}

Result MessageDispatcher::Private::Register(
    MessageProcessor const & oProcessor, std::vector<unsigned int> const & vTypes)
{
    for (unsigned int const iType : vTypes)
    {
        if (!IsMessageType(iType))
            return MakeResult(ERR::eBadData, "Ungültige ClassId!", Result::eCategoryFault);

        ProcessorList * pList = nullptr;
        {
            WriteLock const oScope(oLock);
            pList = &oTable.Demand(iType);
        }
        pList->Add(&oProcessor);
    }
    return Result::Null();
}

void MessageDispatcher::Private::Unregister(MessageProcessor const & oProcessor)
{
    oTable.ForEach([&](unsigned int, ProcessorList & oList) { oList.Remove(&oProcessor); });
}

void MessageDispatcher::Private::AwaitCalls(MessageProcessor const & oProcessor)
{
    oTable.ForEach([&](unsigned int, ProcessorList & oList) { oList.AwaitCalls(&oProcessor); });
}

void MessageDispatcher::Private::Deliver(unsigned int iType, Message const & oMessage, Result & oResult) const
{
    if (ProcessorList * const pList = oTable.Find(iType))
        pList->Deliver(oMessage, oResult);
}

void MessageDispatcher::Private::End()
{
    bEnded.store(true, std::memory_order_relaxed);
    oTable.ForEach([](unsigned int, ProcessorList & oList) { oList.End(); });
}

ClassDescription const & MessageDispatcherConfig::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & MessageDispatcherConfig::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<MessageDispatcherConfig>(
        &MessageProcessorConfig::GetStaticClassDesc(), ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

Root * MessageDispatcherConfig::CreateNew()
{
    return new MessageDispatcherConfig;
}

MessageDispatcher::MessageDispatcher() : m(Private::Make()) {}
MessageDispatcher::MessageDispatcher(MessageDispatcher const & oSource) = default;
MessageDispatcher & MessageDispatcher::operator=(MessageDispatcher const & oSource) = default;

ClassDescription const & MessageDispatcher::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & MessageDispatcher::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<MessageDispatcher>(
        &MessageProcessor::GetStaticClassDesc(), ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

MessageDispatcher::~MessageDispatcher() = default;

Root * MessageDispatcher::CreateNew()
{
    return new MessageDispatcher;
}

Result MessageDispatcher::Register(
    MessageProcessor const & oProcessor, std::vector<unsigned int> const & vTypes)
{
    return m->Register(oProcessor, vTypes);
}

void MessageDispatcher::Unregister(
    MessageProcessor const & oProcessor, std::vector<unsigned int> const & vTypes)
{
    for (unsigned int const iType : vTypes)
        if (ProcessorList * const pList = m->oTable.Find(iType))
            pList->Remove(&oProcessor);
}

void MessageDispatcher::Unregister(MessageProcessor const & oProcessor)
{
    m->Unregister(oProcessor);
}

void MessageDispatcher::Process(Message const & oMessage, Result & oResult) const
{
    ClassDescription const & oClass = oMessage.GetClassDesc();
    m->Deliver(oClass.GetClassId(), oMessage, oResult);

    ClassDescription const & oTop = Message::GetStaticClassDesc();
    ClassDescription const * const pBase = oClass.GetBaseClassDescription();
    if (!pBase || oClass == oTop)
        return;

    m->Deliver(pBase->GetClassId(), oMessage, oResult);
    if (*pBase != oTop)
        oResult.InsertFront(MakeResult(ERR::eInternal,
            String("Message class '") + oClass.GetClassName() + "' does not derive from Message directly.",
            Result::eCategoryFault));
}

void DispatcherEnd::End(MessageDispatcher & oDispatcher)
{
    oDispatcher.m->End();
}

MessageProcessorConfig const & MessageDispatcher::GetConfig() const
{
    return m->oConfig;
}

Result MessageDispatcher::SetConfig(MessageProcessorConfig const & oConfig)
{
    // Another class fails its assertion; there is nothing in the right one to take over.
    MessageDispatcherConfig().Set(oConfig);
    return Result::Null();
}

Result MessageDispatcher::Open()
{
    return Result::Null();
}

void MessageDispatcher::DoCopy(Root const &)
{
    XAssertionFailed("false", "MessageDispatcher::DoCopy : Kopieren nicht erlaubt!");
}

void MessageDispatcher::GetRegistrations(
    MessageProcessor const & oProcessor, std::vector<unsigned int> & vTypes) const
{
    m->oTable.ForEach(
        [&](unsigned int iType, ProcessorList const & oList)
        {
            if (oList.Has(&oProcessor))
                vTypes.push_back(iType);
        });
}

ClassDescription const & MessageDispatcherClientConfig::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & MessageDispatcherClientConfig::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<MessageDispatcherClientConfig>(
        &MessageProcessor::GetStaticClassDesc(), ClassDescription::eAbstract, &CreateNew);
    return oDescription;
}

Root * MessageDispatcherClientConfig::CreateNew()
{
    XAssertionFailed("false", "Unknown");
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
        // Another thread, or the client itself, may have closed it from inside a call that still runs.
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
    : MessageProcessor(oSource), m(std::make_unique<Private>(oSource.m->pBus))
{
    m->bRegistered.store(oSource.m->bRegistered.load(std::memory_order_relaxed), std::memory_order_relaxed);
}

ClassDescription const & MessageDispatcherClient::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & MessageDispatcherClient::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<MessageDispatcherClient>(
        &MessageProcessor::GetStaticClassDesc(), ClassDescription::eAbstract, &CreateNew);
    return oDescription;
}

MessageDispatcherClient::~MessageDispatcherClient()
{
    // Also if it counts as closed: a failed Open has left it registered for some types.
    m->pBus->Unregister(*this);
}

Root * MessageDispatcherClient::CreateNew()
{
    XAssertionFailed("false", "Unknown");
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
