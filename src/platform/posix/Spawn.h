#pragma once

#include "platform/posix/Abandoned.h"

namespace tsl::Platform
{

/// Starts a child and returns after it has begun to execute its program.
[[nodiscard]] int Spawn(ProcessStart const & oStart, int & iProcess);

/// Starts a child that stops itself before it executes its program, and returns after it has stopped: a
/// SIGCONT before the stop would be lost. The child sets oContinued, if it was created, after it is
/// continued.
[[nodiscard]] int SpawnSuspended(ProcessStart const & oStart, SharedFlag & oContinued, int & iProcess);

} // namespace tsl::Platform
