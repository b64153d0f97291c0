#include "platform/windows/Waits.h"

#include "platform/windows/ThreadRecord.h"

#include <algorithm>
#include <chrono>

namespace tsl::Platform
{

namespace
{

constexpr std::size_t HANDLES_MAX = 3;

DWORD GetRest(DWORD iTimeout, std::chrono::steady_clock::time_point oEnd)
{
    if (iTimeout == INFINITE)
        return INFINITE;
    auto const oRest =
        std::chrono::ceil<std::chrono::milliseconds>(oEnd - std::chrono::steady_clock::now()).count();
    return static_cast<DWORD>(std::max<decltype(oRest)>(oRest, 0));
}

} // namespace

DWORD WaitFor(std::initializer_list<HANDLE> oHandles, DWORD iTimeout, Alert eAlert)
{
    WaitScope const oScope(ForcedEndState::eForTime);
    HANDLE aHandles[HANDLES_MAX];
    HANDLE * pEnd = std::copy(oHandles.begin(), oHandles.end(), aHandles);
    if (t_pThis)
        *pEnd++ = t_pThis->oAsked.Get();

    auto const oEnd = std::chrono::steady_clock::now() + std::chrono::milliseconds(iTimeout);
    for (;;)
    {
        DWORD const iRest = GetRest(iTimeout, oEnd);
        DWORD const iCount = static_cast<DWORD>(pEnd - aHandles);
        DWORD const iResult =
            iCount > 0 ? ::WaitForMultipleObjectsEx(iCount, aHandles, FALSE, iRest, eAlert == Alert::eWakes)
                       : (::SleepEx(iRest, eAlert == Alert::eWakes), WAIT_TIMEOUT);
        if (iResult == WAIT_IO_COMPLETION)
            return WAIT_TIMEOUT;
        if (iResult != WAIT_OBJECT_0 + oHandles.size())
            return iResult;

        // Asked to end. If it may not end here, it goes on to wait for the others alone.
        EndThisThreadInWait();
        --pEnd;
    }
}

} // namespace tsl::Platform
