#include <tessel/MessageDispatcher.h>

#include <tessel/Assertion.h>
#include <tessel/Exception.h>
#include <tessel/Locks.h>
#include <tessel/Message.h>
#include <tessel/ObserverNotifyTemplate.h>
#include <tessel/ScopedLock.h>
#include <tessel/String.h>

#include <algorithm>
#include <atomic>
#include <map>

namespace tsl
{

namespace
{

using ObserverList = ObserverNotify<MessageProcessor const, Message, Result, ReaderWriterMutex>;

void CallProcessor(MessageProcessor const & oProcessor, Message const & oMessage, Result & oResult)
{
    oProcessor.Process(oMessage, oResult);
}

/// The observer lists by message type. Lists come and never go, so that a look-up is an array index and
/// needs no lock.
class ObserverTable
{
public:
    /// The list of the type, or null.
    ObserverList * Find(unsigned int iType) const
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
    ObserverList & Demand(unsigned int iType)
    {
        std::unique_ptr<ObserverList> & pList = m_oLists[iType];
        if (!pList)
        {
            if (iType >= GetSize())
                Grow(iType + std::size_t{1});
            pList = std::make_unique<ObserverList>(&CallProcessor);
            (*m_vTables.back())[iType].store(pList.get(), std::memory_order_release);
        }
        return *pList;
    }

    /// Ends the lists in the order of their types. A processor that unregisters itself when it is told
    /// must not find a list that is gone.
    void Clear()
    {
        for (auto & [iType, pList] : m_oLists)
        {
            if (!pList)
                continue;
            (*m_vTables.back())[iType].store(nullptr, std::memory_order_release);
            pList.reset();
        }
    }

private:
    using Entries = std::vector<std::atomic<ObserverList *>>;

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
    std::map<unsigned int, std::unique_ptr<ObserverList>> m_oLists;
};

bool IsMessageType(unsigned int iType)
{
    ClassDescription const * const pDescription = ClassRepository::Instance().GetClassDescription(iType);
    return pDescription && pDescription->IsDerivedClass(Message::GetStaticClassDesc());
}

} // namespace

struct TSL_HIDDEN MessageDispatcher::Private
{
    ~Private() { oTable.Clear(); }

    ObserverTable oTable;
    MessageDispatcherConfig oConfig;

    // For changes of the table.
    ReaderWriterMutex oLock;
};

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

MessageDispatcher::MessageDispatcher() : m(std::make_shared<Private>()) {}
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
    for (unsigned int const iType : vTypes)
    {
        if (!IsMessageType(iType))
            return MakeResult(ERR::eBadData, "Ungültige ClassId!", Result::eCategoryFault);

        ObserverList * pList = nullptr;
        {
            WriteLock const oScope(m->oLock);
            pList = &m->oTable.Demand(iType);
        }
        pList->Attach(&oProcessor);
    }
    return Result::Null();
}

void MessageDispatcher::Unregister(
    MessageProcessor const & oProcessor, std::vector<unsigned int> const & vTypes)
{
    for (unsigned int const iType : vTypes)
        if (ObserverList * const pList = m->oTable.Find(iType))
            pList->Detatch(&oProcessor);
}

void MessageDispatcher::Unregister(MessageProcessor const & oProcessor)
{
    std::vector<unsigned int> vTypes;
    GetRegistrations(oProcessor, vTypes);
    Unregister(oProcessor, vTypes);
}

void MessageDispatcher::Process(Message const & oMessage, Result & oResult) const
{
    ClassDescription const & oClass = oMessage.GetClassDesc();
    Deliver(oClass.GetClassId(), oMessage, oResult);

    ClassDescription const & oTop = Message::GetStaticClassDesc();
    ClassDescription const * const pBase = oClass.GetBaseClassDescription();
    if (!pBase || oClass == oTop)
        return;

    Deliver(pBase->GetClassId(), oMessage, oResult);
    if (*pBase != oTop)
        oResult.InsertFront(MakeResult(ERR::eInternal,
            String("Message class '") + oClass.GetClassName() + "' does not derive from Message directly.",
            Result::eCategoryFault));
}

void MessageDispatcher::Deliver(unsigned int iType, Message const & oMessage, Result & oResult) const
{
    ObserverList const * const pList = m->oTable.Find(iType);
    if (!pList)
        return;

    try
    {
        pList->Notify(oMessage, oResult);
    }
    catch (Exception & oException)
    {
        oResult.InsertFront(oException.GetResult());
    }
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
    // Without the table's lock: somebody who waits for a list's lock must not hold it, since the thread
    // that holds the list may be registering from inside a delivery.
    for (unsigned int iType = 0; iType < m->oTable.GetSize(); ++iType)
    {
        ObserverList const * const pList = m->oTable.Find(iType);
        if (pList && pList->IsAttached(&oProcessor))
            vTypes.push_back(iType);
    }
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
    MessageDispatcherClient::Close();
}

Root * MessageDispatcherClient::CreateNew()
{
    XAssertionFailed("false", "Unknown");
}

Result MessageDispatcherClient::Open()
{
    Result oResult = m_oDispatcher.Register(*this, GetConfig().GetMessageTypes());
    m_bRegistered = oResult.IsOk();
    return oResult;
}

void MessageDispatcherClient::Close()
{
    if (!m_bRegistered)
        return;

    m_oDispatcher.Unregister(*this);
    m_bRegistered = false;
}

} // namespace tsl
