#include "platform/Processor.h"

#include "platform/posix/Instructions.h"

namespace tsl::Platform
{

std::uintptr_t GetInterruptedInstruction(void const *)
{
    return 0;
}

bool IsInterruptedInWait(void const *)
{
    return false;
}

bool JumpsTo(std::uintptr_t, std::size_t, std::uintptr_t)
{
    return false;
}

void Relax() {}

} // namespace tsl::Platform
