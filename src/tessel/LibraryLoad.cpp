#include "LibraryLoad.h"

#include "GlobalApplicationIni.h"
#include "GlobalDebugSwitchRegistry.h"
#include "LockOrder.h"
#include "LogFileProcessor.h"
#include "platform/Libraries.h"
#include "platform/ThreadPresence.h"

#include <tessel/Exception.h>
#include <tessel/FineTask.h>
#include <tessel/GlobalMessageDispatcher.h>
#include <tessel/InitDllTessel.h>
#include <tessel/MessageProcessorFactory.h>
#include <tessel/StaticObjectRegistry.h>
#include <tessel/TaskFactory.h>
#include <tessel/TimeZone.h>

namespace tsl
{

namespace
{

MessageProcessor * CreateLogFileProcessor()
{
    return new LogFileProcessor;
}

Task * CreateFineTask(TaskProcessor * pParent)
{
    return new FineTask(pParent);
}

/// Reads the configuration. If not even the program's name can be found out, that must not end the
/// program before it begins: the bus asks for the configuration again and reports the failure.
void ReadConfiguration()
{
    try
    {
        GlobalApplicationIni::Instance();
    }
    catch (Exception const &)
    {
    }
}

// The order of construction of everything else in the library follows from the steps below.
LibraryLoad const g_oLibraryLoad;

} // namespace

LibraryLoad::LibraryLoad()
{
    Presence::WatchForks();
    RegisterEnd();
    // The log file's class has to be known before the bus is made, and the factory is the first to use
    // the registry of static objects, which thus outlives all that follows.
    MessageProcessorFactory::Instance().Register(LogFileProcessor::CLASS_NAME, &CreateLogFileProcessor);
    static_cast<void>(TimeZone::Init()); // always true
    StaticObjectRegistry::Instance();
    ReadConfiguration();
    GlobalDebugSwitchRegistry::Instance();
    GlobalMessageDispatcher::Instance();
    TaskFactory::Instance().Register(Task::TASK_FINE, &CreateFineTask);
    StaticObjectRegistry::Instance().KeepPresentObjects();
}

LibraryLoad::~LibraryLoad()
{
    TaskFactory::Instance().Unregister(Task::TASK_FINE);
    MessageProcessorFactory::Instance().Unregister(LogFileProcessor::CLASS_NAME);
}

void LibraryLoad::RegisterEnd()
{
    // Before the registry, so that it is destroyed after it.
    static End const oEnd;
}

LibraryLoad::End::~End()
{
    if (Platform::IsUnloading())
    {
        LockOrder::NoteUnloading();
        return;
    }

    // The registry has left these as they are. Their observers are told in the order in which unloading would
    // have destroyed them.
    TaskFactory::Instance().m_oObservers.End();
    GlobalMessageDispatcher::Instance().End();
    MessageProcessorFactory::Instance().m_oObservers.End();
}

} // namespace tsl

int InitDllTessel()
{
    return 1;
}
