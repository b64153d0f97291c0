#include "platform/Waiting.h"

namespace tsl::Platform
{

void WaitWhile(std::atomic<int> & oValue, int iValue)
{
    oValue.wait(iValue, std::memory_order_relaxed);
}

void WakeOne(std::atomic<int> & oValue)
{
    oValue.notify_one();
}

void WakeAll(std::atomic<int> & oValue)
{
    oValue.notify_all();
}

} // namespace tsl::Platform
