#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Result.h>
#include <tessel/SingletonTemplate.h>

#include <memory>
#include <vector>

namespace tsl
{

class Message;
class MessageProcessor;

/// The global bus of a program. It has one processor of its own, the log file, which receives every message; a
/// program registers others. It exists before main begins. Any thread may use it.
///
///     Printer oPrinter;
///     tsl::Result const oResult = tsl::Support::GetAppDisp().Register(oPrinter, {tsl::Message::GetBaseType()});
///
/// If the log file cannot be opened, that is not reported: the bus works without it.
///
/// The bus is closed with the library, at the end of the process or when the library is unloaded. This waits up to
/// 2 seconds until no other thread is in the bus, calls HandlerDestruction of the processors that are still
/// registered, and closes the log file. If a thread stays in the bus for longer, none of this happens, except that
/// the bus is closed.
///
/// A closed bus drops messages and registrations and returns success, and IsAvailable returns false. Threads that
/// still run at the end of the process may go on calling it. After the library has been unloaded, neither Instance
/// nor a kept reference may be used.
class TSL_EXPORT GlobalMessageDispatcher
    : public Described<GlobalMessageDispatcher, Singleton<GlobalMessageDispatcher>>
{
public:
    GlobalMessageDispatcher(GlobalMessageDispatcher const &) = delete;
    GlobalMessageDispatcher & operator=(GlobalMessageDispatcher const &) = delete;

    ~GlobalMessageDispatcher() override;

    /// The one bus.
    static GlobalMessageDispatcher & Instance();

    /// False while this thread creates the bus, and after the bus was closed.
    static bool IsAvailable();

    /// Delivers a message and returns what the processors have reported.
    Result Process(Message const & oMessage);

    /// As in MessageDispatcher.
    [[nodiscard]] Result Register(
        MessageProcessor const & oProcessor, std::vector<unsigned int> const & vTypes);
    void Unregister(MessageProcessor const & oProcessor, std::vector<unsigned int> const & vTypes);
    void Unregister(MessageProcessor const & oProcessor);

private:
    friend class LibraryLoad;

    GlobalMessageDispatcher();

    TSL_HIDDEN void End();

    static GlobalMessageDispatcher * CreateSingletonInstance();

    struct Private;
    std::unique_ptr<Private> m;
};

template<>
TSL_EXPORT ClassDescription const &
Described<GlobalMessageDispatcher, Singleton<GlobalMessageDispatcher>>::GetStaticClassDesc();

template<>
TSL_EXPORT ClassDescription const & Singleton<GlobalMessageDispatcher>::GetStaticClassDesc();
template<>
TSL_EXPORT GlobalMessageDispatcher & Singleton<GlobalMessageDispatcher>::Instance(
    GlobalMessageDispatcher * (*fCreator)());
TSL_EXTERN_TEMPLATE(class Singleton<GlobalMessageDispatcher>);

} // namespace tsl
