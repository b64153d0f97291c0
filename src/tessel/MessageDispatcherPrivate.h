#pragma once

#include "ProcessorTable.h"

#include <tessel/Locks.h>
#include <tessel/MessageDispatcher.h>

#include <atomic>
#include <memory>
#include <vector>

namespace tsl
{

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

} // namespace tsl
