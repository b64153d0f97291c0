#include "../StopSignal.h"

#include <atomic>
#include <initializer_list>

#include <signal.h>

namespace
{

// The handler may run on any thread and must not take a lock; hence an atomic.
std::atomic<bool> g_bHasCome{false};
std::atomic<bool> g_bUrgent{false};
static_assert(std::atomic<bool>::is_always_lock_free);

void Remember(int iSignal)
{
    if (g_bHasCome.exchange(true) && iSignal == SIGINT)
        g_bUrgent = true;
}

} // namespace

void StopSignal::Watch()
{
    struct sigaction oAction = {};
    oAction.sa_handler = &Remember;
    oAction.sa_flags = SA_RESTART;
    ::sigemptyset(&oAction.sa_mask);
    for (int const iSignal : {SIGINT, SIGTERM, SIGQUIT, SIGHUP})
    {
        struct sigaction oFormer = {};
        ::sigaction(iSignal, nullptr, &oFormer);
        if (iSignal != SIGHUP || oFormer.sa_handler != SIG_IGN)
            ::sigaction(iSignal, &oAction, nullptr);
    }
}

bool StopSignal::HasCome()
{
    return g_bHasCome;
}

bool StopSignal::IsUrgent()
{
    return g_bUrgent;
}
