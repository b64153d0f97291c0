#pragma once

#include <cstddef>
#include <cstdint>

/// What the forced end of a thread has to know of the processor's instructions. Each kind of processor has its own
/// file; for one that has none, nothing is known.
namespace tsl::Platform
{

/// The address of the instruction before which a signal has interrupted the calling thread; 0 if unknown.
///
/// @param pContext the third argument of the signal's handler
std::uintptr_t GetInterruptedInstruction(void const * pContext);

/// Whether the interrupted thread waits in a system call, which then has consumed nothing: it was given up
/// (EINTR), or it begins when the handler returns. The interrupted instruction must be readable.
bool IsInterruptedInWait(void const * pContext);

/// Whether the code jumps to that address, as a function does that ends in a call of another one.
bool JumpsTo(std::uintptr_t iCode, std::size_t iSize, std::uintptr_t iTarget);

} // namespace tsl::Platform
