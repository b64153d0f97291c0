#pragma once

#include <tessel/Locks.h>

namespace tsl
{

/// Takes a lock without waiting. Not public: the lock classes have no such operation.
struct LockTrial
{
    /// Takes the lock if it is free or held by this thread. If it returns true, the caller calls Unlock.
    static bool TryToLock(CriticalSectionMutex & oLock);
};

} // namespace tsl
