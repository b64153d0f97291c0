#include <tessel/GlobalMessageDispatcher.h>

#include "BusSilence.h"
#include "LogFileProcessor.h"

#include <tessel/Exception.h>
#include <tessel/Message.h>
#include <tessel/MessageDispatcher.h>
#include <tessel/MessageProcessorFactory.h>
#include <tessel/ResultMessage.h>
#include <tessel/Support.h>

#include <atomic>
#include <string>

namespace tsl
{

template class Singleton<GlobalMessageDispatcher>;

static std::atomic<bool> g_bGone{false};

struct TSL_HIDDEN GlobalMessageDispatcher::Private
{
    ~Private();

    void SelectProcessor(std::string const & sClassName);
    void DemandConfiguration();

    std::unique_ptr<MessageProcessor> pProcessor;
    MessageDispatcher oDispatcher;
};

GlobalMessageDispatcher::Private::~Private()
{
    // It is not told of the end of the bus, since it goes first.
    if (pProcessor)
        oDispatcher.Unregister(*pProcessor);
    pProcessor.reset();
}

void GlobalMessageDispatcher::Private::SelectProcessor(std::string const & sClassName)
{
    pProcessor.reset(MessageProcessorFactory::Instance().CreateProcessor(sClassName));
    if (!pProcessor)
        return;

    // Without a log there is nobody to tell that there is none.
    if (pProcessor->Open().IsOk())
        static_cast<void>(oDispatcher.Register(*pProcessor, {Message::GetBaseType()}));
}

void GlobalMessageDispatcher::Private::DemandConfiguration()
{
    try
    {
        static_cast<void>(Support::GetAppIni());
    }
    catch (Exception & oException)
    {
        Result oIgnored;
        oDispatcher.Process(ResultMessage(oException.GetResult()), oIgnored);
    }
}

ClassDescription const & GlobalMessageDispatcher::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & GlobalMessageDispatcher::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<GlobalMessageDispatcher>(
        &Singleton<GlobalMessageDispatcher>::GetStaticClassDesc(), ClassDescription::eConcrete, nullptr);
    return oDescription;
}

GlobalMessageDispatcher & GlobalMessageDispatcher::Instance()
{
    static GlobalMessageDispatcher & oRef =
        Singleton<GlobalMessageDispatcher>::Instance(&CreateSingletonInstance);
    return oRef;
}

bool GlobalMessageDispatcher::IsAvailable()
{
    return !g_bGone.load(std::memory_order_acquire) && !BusSilence::IsOnThisThread();
}

GlobalMessageDispatcher::GlobalMessageDispatcher() : m(std::make_unique<Private>())
{
    m->SelectProcessor(LogFileProcessor::CLASS_NAME);
    m->DemandConfiguration();
}

GlobalMessageDispatcher::~GlobalMessageDispatcher()
{
    // Before anything goes: what the processors report from here on has nowhere to go.
    g_bGone.store(true, std::memory_order_release);
}

Result GlobalMessageDispatcher::Process(Message const & oMessage)
{
    Result oResult;
    m->oDispatcher.Process(oMessage, oResult);
    return oResult;
}

Result GlobalMessageDispatcher::Register(
    MessageProcessor const & oProcessor, std::vector<unsigned int> const & vTypes)
{
    return m->oDispatcher.Register(oProcessor, vTypes);
}

void GlobalMessageDispatcher::Unregister(
    MessageProcessor const & oProcessor, std::vector<unsigned int> const & vTypes)
{
    m->oDispatcher.Unregister(oProcessor, vTypes);
}

void GlobalMessageDispatcher::Unregister(MessageProcessor const & oProcessor)
{
    m->oDispatcher.Unregister(oProcessor);
}

GlobalMessageDispatcher * GlobalMessageDispatcher::CreateSingletonInstance()
{
    BusSilence const oScope;
    return new GlobalMessageDispatcher;
}

} // namespace tsl
