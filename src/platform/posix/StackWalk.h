#pragma once

#include "platform/Threads.h"

#include <cstdint>

namespace tsl::Platform
{

/// A place in the code of the calling thread, with what its stack does not show.
struct StackPlace
{
    /// What the thread waits for at that place.
    enum EWait
    {
        eNone,
        eForSystem, ///< in a system call that has consumed nothing
        eForTime,   ///< in a function of the library, holding nothing that others need
        eForLock    ///< for a lock of the library, in a system call that has consumed nothing
    };

    std::uintptr_t iInstruction; ///< the address of the next instruction
    std::uintptr_t iEntry;       ///< the library's function that the thread was started with
    EWait eWait;
};

/// Whether FindObstacle is safe in a signal handler. The first call must be outside of one.
bool CanWalkInHandler();

/// Why the calling thread, which holds no lock of the library, cannot be killed at that place. The place must
/// be where a signal interrupted the thread, or where the present function returns to.
///
/// There is no obstacle if all frames from the place out to the entry belong to the program or the library,
/// and the innermost one to the program. A frame of a runtime library may hold locks. One exception: the
/// innermost frames may be a function that only waits, of the runtime library (called by the program) or of
/// the library itself.
EndObstacle FindObstacle(StackPlace const & oPlace);

} // namespace tsl::Platform
