#pragma once

#include <cstdint>

namespace tsl
{

/// A lock's part in the check for deadlocks in debug builds.
///
/// If a thread takes lock B while it holds lock A, the order A, B is recorded for all threads until one of
/// the locks is destroyed. If any thread later takes A while it holds B, two threads could deadlock. Whether
/// they do or not, the program is aborted, and the stacks of both places are written to the standard error
/// stream. Recursive locking and TryToLock record no order.
///
/// In addition, a thread must not call the global bus while it holds an OwnMutex.
class LockOrder
{
public:
    static constexpr bool IS_CHECKED = TESSEL_CHECK_LOCK_ORDER != 0;

    LockOrder() = default;
    ~LockOrder()
    {
        if constexpr (IS_CHECKED)
            Forget();
    }
    LockOrder(LockOrder const &) = delete;
    LockOrder & operator=(LockOrder const &) = delete;

    void SetOwn() { m_bOwn = true; }

    /// The calling thread is about to take the lock (NoteRequest), has taken it, releases it.
    void NoteRequest()
    {
        if constexpr (IS_CHECKED)
            CheckRequest();
    }
    void NoteEntry()
    {
        if constexpr (IS_CHECKED)
            Enter();
    }
    void NoteExit()
    {
        if constexpr (IS_CHECKED)
            Leave();
    }

    /// The calling thread calls the bus.
    static void NoteBus()
    {
        if constexpr (IS_CHECKED)
            StopIfOwnLockIsHeld();
    }

    /// Frees the memory of the check when the library is unloaded.
    static void NoteUnloading()
    {
        if constexpr (IS_CHECKED)
            FreeAll();
    }

private:
    void CheckRequest();
    void NoteOrder();
    void Enter();
    void Leave();
    void Forget();
    static void StopIfOwnLockIsHeld();
    static void FreeAll();

    // 0 until the lock is first taken while another one is held, or the other way round.
    std::uint64_t m_iNumber = 0;
    bool m_bOwn = false;
};

} // namespace tsl
