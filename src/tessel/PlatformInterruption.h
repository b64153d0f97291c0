#pragma once

#include <cstdint>

namespace tsl::Platform
{

/// Where a signal has interrupted the calling thread. Each processor has its own file for it; for one that
/// has none, nothing is known.
struct Interruption
{
    std::uintptr_t iInstruction = 0;   ///< the address of what comes next; 0 if unknown
    std::intptr_t iResult = 0;         ///< of a call of the system, if it has just returned
    std::uintptr_t iFirstArgument = 0; ///< of that call
};

/// @param pContext the third argument of the signal's handler
Interruption GetInterruption(void const * pContext);

/// Whether the instruction in front of that address, in code that can be read, is a call of the system.
bool IsBehindSystemCall(std::uintptr_t iInstruction);

} // namespace tsl::Platform
