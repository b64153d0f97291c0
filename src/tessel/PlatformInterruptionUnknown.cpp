#include "PlatformInterruption.h"

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

} // namespace tsl::Platform
