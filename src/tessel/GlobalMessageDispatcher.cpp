#include <tessel/GlobalMessageDispatcher.h>

#include "BusSilence.h"
#include "DispatcherEnd.h"
#include "LockOrder.h"
#include "LogFileProcessor.h"
#include "platform/ForcedEnd.h"

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

template<>
ClassDescription const & Singleton<GlobalMessageDispatcher>::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = Private::Describe();
    return oDescription;
}

template<>
GlobalMessageDispatcher & Singleton<GlobalMessageDispatcher>::Instance(
    GlobalMessageDispatcher * (*fCreator)())
{
    static GlobalMessageDispatcher & oObject = *RegisterSingletonObject(Private::InstanceEx(fCreator));
    return oObject;
}

template class Singleton<GlobalMessageDispatcher>;

static std::atomic<bool> g_bGone{false};

struct TSL_HIDDEN GlobalMessageDispatcher::Private
{
    void End();
    void SelectProcessor(std::string const & sClassName);
    void ReportMissingConfiguration();

    MessageDispatcher oDispatcher;
    std::unique_ptr<MessageProcessor> pProcessor;
};

void GlobalMessageDispatcher::Private::End()
{
    // Unregistered first: its HandlerDestruction is not called.
    if (pProcessor)
    {
        oDispatcher.Unregister(*pProcessor);
        pProcessor->Close();
    }
    DispatcherEnd::End(oDispatcher);
}

void GlobalMessageDispatcher::Private::SelectProcessor(std::string const & sClassName)
{
    pProcessor.reset(MessageProcessorFactory::Instance().CreateProcessor(sClassName));
    if (!pProcessor)
        return;

    // A failure could only be reported to the log.
    if (pProcessor->Open().IsOk())
        static_cast<void>(oDispatcher.Register(*pProcessor, {Message::GetBaseType()}));
}

void GlobalMessageDispatcher::Private::ReportMissingConfiguration()
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

template<>
constexpr ClassSource CLASS_SOURCE<GlobalMessageDispatcher>{};
template<>
ClassDescription const &
Described<GlobalMessageDispatcher, Singleton<GlobalMessageDispatcher>>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
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
    m->ReportMissingConfiguration();
}

GlobalMessageDispatcher::~GlobalMessageDispatcher()
{
    End();
}

void GlobalMessageDispatcher::End()
{
    // First of all: from here on no other thread enters, and what the processors report is dropped.
    g_bGone.store(true, std::memory_order_seq_cst);
    if (Presence::WaitUntilOthersLeaveBus())
        m->End();
}

Result GlobalMessageDispatcher::Process(Message const & oMessage)
{
    LockOrder::NoteBus();
    Result oResult;
    BusVisit const oVisit;
    if (!g_bGone.load(std::memory_order_relaxed))
        m->oDispatcher.Process(oMessage, oResult);
    return oResult;
}

Result GlobalMessageDispatcher::Register(
    MessageProcessor const & oProcessor, std::vector<unsigned int> const & vTypes)
{
    BusVisit const oVisit;
    return g_bGone.load(std::memory_order_relaxed) ? Result::Null()
                                                   : m->oDispatcher.Register(oProcessor, vTypes);
}

void GlobalMessageDispatcher::Unregister(
    MessageProcessor const & oProcessor, std::vector<unsigned int> const & vTypes)
{
    BusVisit const oVisit;
    if (!g_bGone.load(std::memory_order_relaxed))
        m->oDispatcher.Unregister(oProcessor, vTypes);
}

void GlobalMessageDispatcher::Unregister(MessageProcessor const & oProcessor)
{
    BusVisit const oVisit;
    if (!g_bGone.load(std::memory_order_relaxed))
        m->oDispatcher.Unregister(oProcessor);
}

GlobalMessageDispatcher * GlobalMessageDispatcher::CreateSingletonInstance()
{
    BusSilence const oScope;
    return new GlobalMessageDispatcher;
}

} // namespace tsl
