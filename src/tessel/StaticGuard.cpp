#include "platform/ForcedEnd.h"
#include "platform/Waiting.h"

#include <tessel/Export.h>

#include <atomic>
#include <cstdint>

// The guards of the library's function-local statics, in place of the runtime library's. While a thread
// initialises such an object, no other thread can fork: the child would find the guard locked for ever. The
// names and the meaning of the first byte are fixed by the C++ ABI. These functions are not exported.

namespace
{

enum State : int
{
    eUnmade = 0,
    eMade = 1, ///< the compiler's code checks the first byte for it
    eInMaking = 0x100,
    eAwaited = 0x200 ///< being initialised, and other threads may be waiting
};

// A guard is used in place as an atomic number, since a thread may sleep until it changes.
static_assert(sizeof(std::atomic<int>) == sizeof(int) && std::atomic<int>::is_always_lock_free);

std::atomic<int> & GetState(int * pGuard)
{
    return *reinterpret_cast<std::atomic<int> *>(pGuard);
}

/// True if the calling thread has to initialise the object. False if it has been initialised.
bool Acquire(std::atomic<int> & eState)
{
    for (;;)
    {
        int eFound = eUnmade;
        if (eState.compare_exchange_strong(eFound, eInMaking, std::memory_order_acquire))
            return true;
        if (eFound == eMade)
            return false;
        if (eFound == eInMaking
            && !eState.compare_exchange_strong(eFound, eAwaited, std::memory_order_relaxed))
            continue;
        tsl::LockWaitScope const oScope;
        tsl::Platform::WaitWhile(eState, eAwaited);
    }
}

void Release(int * pGuard, State eResult)
{
    std::atomic<int> & eState = GetState(pGuard);
    if (eState.exchange(eResult, std::memory_order_release) == eAwaited)
        tsl::Platform::WakeAll(eState);
    tsl::t_oForcedEnd.RemoveLock();
}

} // namespace

// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C"
{

    TSL_HIDDEN int __cxa_guard_acquire(int * pGuard);
    TSL_HIDDEN void __cxa_guard_release(int * pGuard);
    TSL_HIDDEN void __cxa_guard_abort(int * pGuard);

    int __cxa_guard_acquire(int * pGuard)
    {
        tsl::t_oForcedEnd.AddLock();
        if (Acquire(GetState(pGuard)))
            return 1;
        tsl::t_oForcedEnd.RemoveLock();
        return 0;
    }

    void __cxa_guard_release(int * pGuard)
    {
        Release(pGuard, eMade);
    }

    void __cxa_guard_abort(int * pGuard)
    {
        Release(pGuard, eUnmade);
    }

} // extern "C"
// NOLINTEND(bugprone-reserved-identifier)
