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

/// The application-wide bus. It has one processor of its own, the log file, which gets every message; an
/// application registers others. It stands before the program's first line. Any thread may use it.
///
/// A log file that cannot be opened is not reported: the bus then works without it.
///
/// The bus ends with the library, at the end of the process or when the library is unloaded. Threads that are
/// in it are waited for; processors that are still registered are told by HandlerDestruction, and the log file
/// is closed. If a thread is in it for 2 seconds, it is left as it is.
///
/// From then on IsAvailable returns false, what is reported or registered is dropped, and success is returned.
/// Threads that run on at the end of the process may go on like this. When the library has been unloaded, neither
/// Instance nor a reference that was kept may be used any more.
class TSL_EXPORT GlobalMessageDispatcher
    : public Described<GlobalMessageDispatcher, Singleton<GlobalMessageDispatcher>>
{
public:
    GlobalMessageDispatcher(GlobalMessageDispatcher const &) = delete;
    GlobalMessageDispatcher & operator=(GlobalMessageDispatcher const &) = delete;

    ~GlobalMessageDispatcher() override;

    static GlobalMessageDispatcher & Instance();

    /// Whether the bus can be asked for: not from inside its own making, and not when it has ended.
    static bool IsAvailable();

    /// Delivers a message and returns what the processors have left in the result.
    Result Process(Message const & oMessage);

    /// As with MessageDispatcher.
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

extern template ClassDescription const &
Described<GlobalMessageDispatcher, Singleton<GlobalMessageDispatcher>>::GetStaticClassDesc();

extern template class Singleton<GlobalMessageDispatcher>;

} // namespace tsl
