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

/// Reads the program's ini file. If the program's name is unknown, that must not end the program before main: the
/// bus tries again and reports the failure.
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
    // The bus needs the factory of the log file. Registering it also constructs the registry of static objects,
    // which is therefore destroyed after everything below.
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
    // Constructed before the registry, so destroyed after it.
    static End const oEnd;
}

LibraryLoad::End::~End()
{
    if (Platform::IsUnloading())
    {
        LockOrder::NoteUnloading();
        return;
    }

    // At the end of the process the registry does not delete the factories and the bus. Notify their observers here,
    // in the order in which unloading would destroy the three.
    TaskFactory::Instance().m_oObservers.End();
    GlobalMessageDispatcher::Instance().End();
    MessageProcessorFactory::Instance().m_oObservers.End();
}

} // namespace tsl

int InitDllTessel()
{
    return 1;
}
