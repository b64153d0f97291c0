#include "platform/Processor.h"

#include "platform/windows/System.h"

namespace tsl::Platform
{

void Relax()
{
    YieldProcessor();
}

} // namespace tsl::Platform
