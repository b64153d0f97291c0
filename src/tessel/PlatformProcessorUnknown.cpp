#include "PlatformProcessor.h"

namespace tsl::Platform
{

Interruption GetInterruption(void const *)
{
    return {};
}

bool IsBehindSystemCall(std::uintptr_t)
{
    return false;
}

void Relax() {}

} // namespace tsl::Platform
