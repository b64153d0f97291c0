#include "PlatformProcessor.h"

#include <cstring>

#include <ucontext.h>

namespace tsl::Platform
{

Interruption GetInterruption(void const * pContext)
{
    auto const & aRegisters = static_cast<ucontext_t const *>(pContext)->uc_mcontext.gregs;
    return {static_cast<std::uintptr_t>(aRegisters[REG_RIP]), aRegisters[REG_RAX],
        static_cast<std::uintptr_t>(aRegisters[REG_RDI])};
}

bool IsBehindSystemCall(std::uintptr_t iInstruction)
{
    unsigned char const aSystemCall[] = {0x0F, 0x05};
    return std::memcmp(reinterpret_cast<void const *>(iInstruction - sizeof aSystemCall), aSystemCall,
               sizeof aSystemCall)
           == 0;
}

void Relax()
{
    __builtin_ia32_pause();
}

} // namespace tsl::Platform
