#include "platform/posix/Instructions.h"

#include "platform/posix/SystemCalls.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>

#include <ucontext.h>

namespace tsl::Platform
{

namespace
{

constexpr std::size_t SYSTEM_CALL_SIZE = 2;

/// Whether the instruction at that address is a system call. A faster one is followed by this one, and the system
/// returns to the place after it. Reads the second byte only if the first one matches: it may be in memory that is not
/// readable otherwise.
bool IsSystemCall(std::uintptr_t iInstruction)
{
    auto const pBytes = reinterpret_cast<unsigned char const *>(iInstruction);
    return pBytes[0] == 0xCD && pBytes[1] == 0x80;
}

} // namespace

std::uintptr_t GetInterruptedInstruction(void const * pContext)
{
    return static_cast<std::uintptr_t>(static_cast<ucontext_t const *>(pContext)->uc_mcontext.gregs[REG_EIP]);
}

bool IsInterruptedInWait(void const * pContext)
{
    auto const & aRegisters = static_cast<ucontext_t const *>(pContext)->uc_mcontext.gregs;
    std::uintptr_t const iInstruction = GetInterruptedInstruction(pContext);
    if (aRegisters[REG_EAX] == -EINTR && IsSystemCall(iInstruction - SYSTEM_CALL_SIZE))
        return true;
    return IsSystemCall(iInstruction)
           && IsRestartedWait(aRegisters[REG_EAX], static_cast<unsigned long>(aRegisters[REG_ECX]));
}

} // namespace tsl::Platform
