#include "platform/Processor.h"

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

constexpr std::size_t INSTRUCTION_SIZE = 4;

std::uint32_t Read(std::uintptr_t iInstruction)
{
    return *reinterpret_cast<std::uint32_t const *>(iInstruction);
}

bool IsSystemCall(std::uintptr_t iInstruction)
{
    constexpr std::uint32_t SYSTEM_CALL = 0xD4000001;
    return Read(iInstruction) == SYSTEM_CALL;
}

/// The distance of a jump, counted in instructions, is in iBits bits from iShift on, and may be negative.
std::intptr_t GetDistance(std::uint32_t iInstruction, unsigned int iShift, unsigned int iBits)
{
    auto const iHighest = static_cast<std::int32_t>(iInstruction << (32 - iShift - iBits));
    return std::intptr_t{iHighest >> (32 - iBits)} * std::intptr_t{INSTRUCTION_SIZE};
}

} // namespace

std::uintptr_t GetInterruptedInstruction(void const * pContext)
{
    return static_cast<ucontext_t const *>(pContext)->uc_mcontext.pc;
}

bool IsInterruptedInWait(void const * pContext)
{
    // The result is in the register of the first argument.
    auto const & aRegisters = static_cast<ucontext_t const *>(pContext)->uc_mcontext.regs;
    constexpr int CALL_REGISTER = 8;
    std::uintptr_t const iInstruction = GetInterruptedInstruction(pContext);
    if (static_cast<long>(aRegisters[0]) == -EINTR && IsSystemCall(iInstruction - INSTRUCTION_SIZE))
        return true;
    return IsSystemCall(iInstruction)
           && IsRestartedWait(static_cast<long>(aRegisters[CALL_REGISTER]), aRegisters[1]);
}

bool JumpsTo(std::uintptr_t iCode, std::size_t iSize, std::uintptr_t iTarget)
{
    for (std::uintptr_t iAt = iCode; iAt + INSTRUCTION_SIZE <= iCode + iSize; iAt += INSTRUCTION_SIZE)
    {
        std::uint32_t const iInstruction = Read(iAt);
        auto const iDistance = static_cast<std::intptr_t>(iTarget - iAt);
        bool const bJump = (iInstruction & 0xFC000000) == 0x14000000;
        bool const bConditional = (iInstruction & 0xFF000000) == 0x54000000;
        if ((bJump && GetDistance(iInstruction, 0, 26) == iDistance)
            || (bConditional && GetDistance(iInstruction, 5, 19) == iDistance))
            return true;
    }
    return false;
}

void Relax()
{
    asm volatile("yield");
}

} // namespace tsl::Platform
