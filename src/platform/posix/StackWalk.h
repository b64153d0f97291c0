#pragma once

#include "platform/Threads.h"

#include <cstdint>

namespace tsl::Platform
{

/// A place of the calling thread, and what is to be known of it besides its stack.
struct StackPlace
{
    /// For what the thread waits there.
    enum EWait
    {
        eNone,
        eForSystem, ///< in a system call that has consumed nothing
        eForTime,   ///< in a function of the library that keeps nothing that others need
        eForLock    ///< for a lock of the library, in a system call that has consumed nothing
    };

    std::uintptr_t iInstruction; ///< the next one there
    std::uintptr_t iEntry;       ///< the function of the library that the thread was started for
    EWait eWait;
};

/// Whether FindObstacle is safe in a signal handler.
bool CanWalkInHandler();

/// What keeps the thread, which holds no lock of the library, from being ended at that place, which has to be
/// interrupted or be what the present function returns to.
///
/// Nothing does if all frames from there out to the entry are the program's and the library's own, with the
/// program's innermost. A frame of a runtime library may keep locks. But the innermost frames may be a
/// function of the runtime, called by the program, that does nothing but wait, or one of the library's.
EndObstacle FindObstacle(StackPlace const & oPlace);

} // namespace tsl::Platform
