#include "../StopSignal.h"

#include <atomic>

#include <windows.h>

namespace
{

// The handler runs on a thread of its own.
std::atomic<bool> g_bHasCome{false};
std::atomic<bool> g_bUrgent{false};

BOOL WINAPI Remember(DWORD iEvent)
{
    if (g_bHasCome.exchange(true) && (iEvent == CTRL_C_EVENT || iEvent == CTRL_BREAK_EVENT))
        g_bUrgent = true;

    // The system ends the program when the handler returns, if the window is closed or the user logs off.
    if (iEvent != CTRL_C_EVENT && iEvent != CTRL_BREAK_EVENT)
        ::Sleep(INFINITE);
    return TRUE;
}

} // namespace

void StopSignal::Watch()
{
    ::SetConsoleCtrlHandler(&Remember, TRUE);
}

bool StopSignal::HasCome()
{
    return g_bHasCome;
}

bool StopSignal::IsUrgent()
{
    return g_bUrgent;
}
