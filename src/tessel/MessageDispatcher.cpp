#include <tessel/MessageDispatcher.h>

#include "DispatcherEnd.h"
#include "MessageDispatcherPrivate.h"

#include <tessel/Assertion.h>
#include <tessel/Exception.h>
#include <tessel/Message.h>
#include <tessel/ScopedLock.h>
#include <tessel/String.h>

namespace tsl
{

namespace
{

bool IsMessageType(ClassDescription const * pDescription)
{
    return pDescription && pDescription->IsDerivedClass(Message::GetStaticClassDesc());
}

/// The reason why an id is no type of messages. The description is null if there is none.
Result MakeTypeFault(unsigned int iType, ClassDescription const * pDescription)
{
    String sReason("The id is ");
    sReason << iType;
    if (pDescription)
        sReason << ", of '" << pDescription->GetClassName() << "', which is no message class.";
    else
        sReason << ", which no class has.";
    return MakeResult(ERR::eBadData, sReason, Result::eCategoryFault);
}

} // namespace

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
        ClassDescription const * const pDescription = ClassRepository::Instance().GetClassDescription(iType);
        if (!IsMessageType(pDescription))
            return MakeResult(ERR::eBadData, "Ungültige ClassId!", MakeTypeFault(iType, pDescription));

        ProcessorList * pList = nullptr;
        {
            WriteLock const oScope(oLock);
            pList = &oTable.GetOrCreate(iType);
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

template<>
constexpr ClassSource CLASS_SOURCE<MessageDispatcherConfig>{};
template<>
ClassDescription const & Described<MessageDispatcherConfig, MessageProcessorConfig>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

MessageDispatcher::MessageDispatcher() : m(Private::Make()) {}
MessageDispatcher::MessageDispatcher(MessageDispatcher const & oSource) = default;
MessageDispatcher & MessageDispatcher::operator=(MessageDispatcher const & oSource) = default;

template<>
constexpr ClassSource CLASS_SOURCE<MessageDispatcher>{};
template<>
ClassDescription const & Described<MessageDispatcher, MessageProcessor>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

MessageDispatcher::~MessageDispatcher() = default;

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
    // Set asserts the class. There is nothing to copy.
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

} // namespace tsl
