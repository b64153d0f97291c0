#pragma once

#include "ProcessorTable.h"

#include <tessel/Locks.h>
#include <tessel/MessageDispatcher.h>

#include <atomic>
#include <memory>
#include <vector>

namespace tsl
{

/// The record of a bus, which its dispatcher objects and its clients share. The bus is closed when the last
/// dispatcher is destroyed; clients that still have the record find no processors in it.
struct TSL_HIDDEN MessageDispatcher::Private : std::enable_shared_from_this<MessageDispatcher::Private>
{
    /// Owned by the dispatcher objects alone, so its destructor closes the bus.
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
