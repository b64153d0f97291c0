#include "platform/posix/StackWalk.h"

namespace tsl::Platform
{

// The stack cannot be walked on this system, so a thread can only be killed where the library itself waits.

bool CanWalkInHandler()
{
    return false;
}

EndObstacle FindObstacle(StackPlace const &)
{
    return EndObstacle::eStack;
}

} // namespace tsl::Platform
