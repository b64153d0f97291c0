#pragma once

namespace tsl
{

class MessageDispatcher;

/// Closes a bus without destroying it, since the calling thread may be inside a delivery: calls HandlerDestruction
/// of its processors and removes them.
struct DispatcherEnd
{
    static void End(MessageDispatcher & oDispatcher);
};

} // namespace tsl
