#include "platform/posix/StackWalk.h"

namespace tsl::Platform
{

// The stack cannot be walked here, so a thread ends only where the library itself waits.

bool CanWalkInHandler()
{
    return false;
}

EndObstacle FindObstacle(StackPlace const &)
{
    return EndObstacle::eStack;
}

} // namespace tsl::Platform
