#pragma once

namespace tsl
{

class MessageDispatcher;

/// Ends a bus that is not destroyed, since the calling thread may be in it: its processors are told, and it has
/// none afterwards.
struct DispatcherEnd
{
    static void End(MessageDispatcher & oDispatcher);
};

} // namespace tsl
