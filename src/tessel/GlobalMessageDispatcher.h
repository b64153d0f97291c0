#pragma once

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
/// The bus is deleted at the library's end, when exit functions run or the library is unloaded; processors
/// that are still registered are told by HandlerDestruction. From then on Support and log points drop what
/// is reported and return success, IsAvailable answers false, and neither Instance nor a reference that was
/// kept may be used any more.
class TSL_EXPORT GlobalMessageDispatcher : public Singleton<GlobalMessageDispatcher>
{
public:
    GlobalMessageDispatcher(GlobalMessageDispatcher const &) = delete;
    GlobalMessageDispatcher & operator=(GlobalMessageDispatcher const &) = delete;

    ClassDescription const & GetClassDesc() const override;
    ~GlobalMessageDispatcher() override;
    static ClassDescription const & GetStaticClassDesc();

    static GlobalMessageDispatcher & Instance();

    /// Whether the bus can be asked for: not from inside its own making, and not when it has been deleted
    /// at the end of the library.
    static bool IsAvailable();

    /// Delivers a message and returns what the processors have left in the result.
    Result Process(Message const & oMessage);

    /// As with MessageDispatcher.
    [[nodiscard]] Result Register(
        MessageProcessor const & oProcessor, std::vector<unsigned int> const & vTypes);
    void Unregister(MessageProcessor const & oProcessor, std::vector<unsigned int> const & vTypes);
    void Unregister(MessageProcessor const & oProcessor);

private:
    GlobalMessageDispatcher();

    static GlobalMessageDispatcher * CreateSingletonInstance();

    struct Private;
    std::unique_ptr<Private> m;
};

extern template class Singleton<GlobalMessageDispatcher>;

} // namespace tsl
