#pragma once

#include <cstddef>
#include <cstdint>

/// What killing a thread needs to know about machine instructions. Each processor has its own file; without
/// one, ProcessorUnknown.cpp knows nothing.
namespace tsl::Platform
{

/// The address of the instruction that the calling thread was about to execute when a signal interrupted it;
/// 0 if unknown.
///
/// @param pContext the third argument of the signal handler
std::uintptr_t GetInterruptedInstruction(void const * pContext);

/// Whether the interrupted thread waits in a system call that has consumed nothing: the call was interrupted
/// (EINTR), or it starts (again) when the handler returns. The memory around the interrupted instruction must
/// be readable.
bool IsInterruptedInWait(void const * pContext);

/// Whether the code contains a jump to that address, as a function with a tail call does.
bool JumpsTo(std::uintptr_t iCode, std::size_t iSize, std::uintptr_t iTarget);

} // namespace tsl::Platform
