#pragma once

#include "platform/posix/Abandoned.h"

namespace tsl::Platform
{

/// Starts a child and returns when it has entered its program.
[[nodiscard]] int Spawn(ProcessStart const & oStart, int & iProcess);

/// Starts a child and returns when it has stopped itself where it would enter its program. It must have
/// done so by then: a continuation that came first would be lost. Once it is continued, it sets the flag if
/// that is made.
[[nodiscard]] int SpawnSuspended(ProcessStart const & oStart, SharedFlag & oContinued, int & iProcess);

} // namespace tsl::Platform
