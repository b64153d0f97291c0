#include "platform/Waiting.h"

#include "platform/windows/ThreadRecord.h"

namespace tsl::Platform
{

void WaitWhile(std::atomic<int> & oValue, int iValue)
{
    Thread * const pThis = t_pThis;
    if (pThis)
    {
        // Before the state is read: whoever asks sets the state first, and then wakes the published place.
        pThis->pAwaited.store(&oValue);
        EndThisThreadInWait();
    }
    ::WaitOnAddress(&oValue, &iValue, sizeof iValue, INFINITE);
    if (pThis)
    {
        EndThisThreadInWait();
        pThis->pAwaited.store(nullptr);
    }
}

void WakeOne(std::atomic<int> & oValue)
{
    ::WakeByAddressSingle(&oValue);
}

void WakeAll(std::atomic<int> & oValue)
{
    ::WakeByAddressAll(&oValue);
}

} // namespace tsl::Platform
