#pragma once

#include "Platform.h"

namespace tsl::Platform
{

/// Starts a child and returns when it has entered its program.
[[nodiscard]] int Spawn(ProcessStart const & oStart, int & iProcess);

/// Starts a child and returns when it has stopped itself where it would enter its program. It must have
/// done so by then: a continuation that came first would be lost.
[[nodiscard]] int SpawnSuspended(ProcessStart const & oStart, int & iProcess);

} // namespace tsl::Platform
