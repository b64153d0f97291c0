#pragma once

#include <tessel/Locks.h>

namespace tsl
{

/// Takes a lock without waiting, for the library alone: the locks that it offers have no such operation.
struct LockTrial
{
    /// Takes the lock if it is free or held by this thread; Unlock then gives it up.
    static bool TryToLock(CriticalSectionMutex & oLock);
};

} // namespace tsl
