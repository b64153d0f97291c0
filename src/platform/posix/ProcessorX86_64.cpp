#include "platform/Processor.h"

#include "platform/posix/Instructions.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <linux/futex.h>
#include <sys/syscall.h>
#include <ucontext.h>

namespace tsl::Platform
{

namespace
{

constexpr std::size_t SYSTEM_CALL_SIZE = 2;

/// Whether the instruction at that address is a system call. Reads the second byte only if the first one
/// matches: it may be in memory that is not readable otherwise.
bool IsSystemCall(std::uintptr_t iInstruction)
{
    auto const pBytes = reinterpret_cast<unsigned char const *>(iInstruction);
    return pBytes[0] == 0x0F && pBytes[1] == 0x05;
}

/// Whether a system call only waits, and is restarted from its beginning after a signal.
bool IsRestartedWait(long iCall, unsigned long iSecondArgument)
{
    switch (iCall)
    {
    case SYS_futex:
        // Other futex operations wake threads, which must not be lost.
        switch (static_cast<int>(iSecondArgument) & FUTEX_CMD_MASK)
        {
        case FUTEX_WAIT:
        case FUTEX_WAIT_BITSET:
            return true;
        default:
            return false;
        }
    case SYS_read:
    case SYS_pread64:
    case SYS_readv:
    case SYS_write:
    case SYS_pwrite64:
    case SYS_writev:
    case SYS_recvfrom:
    case SYS_recvmsg:
    case SYS_sendto:
    case SYS_sendmsg:
    case SYS_accept:
    case SYS_accept4:
    case SYS_connect:
    case SYS_open:
    case SYS_openat:
    case SYS_fcntl:
    case SYS_flock:
    case SYS_wait4:
    case SYS_waitid:
        return true;
    default:
        return false;
    }
}

} // namespace

std::uintptr_t GetInterruptedInstruction(void const * pContext)
{
    return static_cast<std::uintptr_t>(static_cast<ucontext_t const *>(pContext)->uc_mcontext.gregs[REG_RIP]);
}

bool IsInterruptedInWait(void const * pContext)
{
    auto const & aRegisters = static_cast<ucontext_t const *>(pContext)->uc_mcontext.gregs;
    std::uintptr_t const iInstruction = GetInterruptedInstruction(pContext);
    if (aRegisters[REG_RAX] == -EINTR && IsSystemCall(iInstruction - SYSTEM_CALL_SIZE))
        return true;
    return IsSystemCall(iInstruction)
           && IsRestartedWait(aRegisters[REG_RAX], static_cast<unsigned long>(aRegisters[REG_RSI]));
}

bool JumpsTo(std::uintptr_t iCode, std::size_t iSize, std::uintptr_t iTarget)
{
    // Jumps are E9, conditional ones 0F 80 to 0F 8F; the distance counts from the next instruction.
    // Instructions are not decoded: other bytes followed by just this distance are too unlikely to matter.
    constexpr std::size_t JUMP_SIZE = 5;
    for (std::uintptr_t iAt = iCode; iAt + JUMP_SIZE <= iCode + iSize; ++iAt)
    {
        std::uint32_t iDistance = 0;
        std::memcpy(&iDistance, reinterpret_cast<void const *>(iAt + 1), sizeof iDistance);
        int const iFirst = *reinterpret_cast<unsigned char const *>(iAt);
        if (iDistance == static_cast<std::uint32_t>(iTarget - (iAt + JUMP_SIZE))
            && (iFirst == 0xE9 || (iFirst & 0xF0) == 0x80))
            return true;
    }
    return false;
}

void Relax()
{
    __builtin_ia32_pause();
}

} // namespace tsl::Platform
