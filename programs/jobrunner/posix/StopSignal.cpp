#include "../StopSignal.h"

#include <atomic>
#include <csignal>

namespace
{

// The handler may run on any thread and must not take a lock; hence an atomic.
std::atomic<bool> g_bHasCome{false};
static_assert(std::atomic<bool>::is_always_lock_free);

void Remember(int)
{
    g_bHasCome = true;
}

} // namespace

void StopSignal::Watch()
{
    std::signal(SIGINT, &Remember);
    std::signal(SIGTERM, &Remember);
}

bool StopSignal::HasCome()
{
    return g_bHasCome;
}
