#include "platform/Clock.h"

#include "platform/windows/Waits.h"

#include <chrono>

#include <time.h>

namespace tsl::Platform
{

std::int64_t GetTime()
{
    return ::_time64(nullptr);
}

std::int64_t GetSteadyTime()
{
    // The counter behind this clock goes on while the machine is suspended.
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

void Sleep(int iDuration)
{
    if (iDuration > 0)
        static_cast<void>(WaitFor({}, static_cast<DWORD>(iDuration)));
}

void SleepAlertably(int iDuration)
{
    if (iDuration > 0)
        static_cast<void>(WaitFor({}, static_cast<DWORD>(iDuration), Alert::eWakes));
}

} // namespace tsl::Platform
