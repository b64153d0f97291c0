#pragma once

#include <cstdint>

namespace tsl
{

/// What a lock is for the check of the order in which locks are taken, which a debug build makes.
///
/// A thread that waits for a lock while it holds another one has given the two an order, which holds for all
/// threads until one of the locks is destroyed. One that asks for locks against that order could meet another
/// thread half-way, and both would wait for ever: whether or not that happens, the program is stopped and both
/// places are written to the standard error stream. Entries of a lock beyond the first one do not count, nor do
/// attempts that do not wait.
///
/// A lock of the library's own, under which nothing of the program is called, is in addition not to be held where
/// a thread enters the global bus.
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

    /// The calling thread is about to wait for the lock, has got it, gives it up.
    void NoteWish()
    {
        if constexpr (IS_CHECKED)
            Ask();
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

    /// The calling thread enters the bus.
    static void NoteBus()
    {
        if constexpr (IS_CHECKED)
            StopIfOwnLockIsHeld();
    }

    /// Frees what the check has kept, when the library is unloaded.
    static void NoteUnloading()
    {
        if constexpr (IS_CHECKED)
            FreeAll();
    }

private:
    void Ask();
    void NoteOrder();
    void Enter();
    void Leave();
    void Forget();
    static void StopIfOwnLockIsHeld();
    static void FreeAll();

    // 0 until the lock is first taken together with another one.
    std::uint64_t m_iNumber = 0;
    bool m_bOwn = false;
};

} // namespace tsl
