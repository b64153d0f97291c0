#pragma once

#include <cstdint>

namespace tsl::Platform
{

// What depends on the kind of processor. Each has its own file; for one that has none, nothing is known.

/// Where a signal has interrupted the calling thread.
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

/// Lets a moment pass, for a thread that looks at a value over and over.
void Relax();

} // namespace tsl::Platform
