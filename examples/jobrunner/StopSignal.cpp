#include "StopSignal.h"

#include <csignal>

namespace
{

std::sig_atomic_t volatile g_bHasCome = 0;

void Remember(int)
{
    g_bHasCome = 1;
}

} // namespace

void StopSignal::Watch()
{
    std::signal(SIGINT, &Remember);
    std::signal(SIGTERM, &Remember);
}

bool StopSignal::HasCome()
{
    return g_bHasCome != 0;
}
