#pragma once

#include <atomic>
#include <cstdint>

namespace tsl
{

struct ForcedEndState;

/// What other threads may read of a thread, also when it has ended: whether it is in the middle of something.
/// The thread writes it with plain stores, which cost next to nothing; whoever reads it makes all threads of
/// the process show their stores first (see Presence::WaitForFork).
struct alignas(64) ThreadPresence
{
    /// Holds a lock or begins to, unless it waits for the first one.
    std::atomic<bool> bLocking{false};

    /// Counts the beginnings and ends of its waits for a lock: odd while it waits.
    std::atomic<unsigned int> iWaits{0};

    /// Calls of the global bus that it is in.
    std::atomic<unsigned int> iVisits{0};

    /// 0 if no thread has the object.
    std::atomic<unsigned long> iThreadId{0};
};

/// Brings threads together where one needs the others to be out of something: at a fork, and at the end of the
/// process.
///
/// A thread that forks waits until the others hold no lock of the library, and keeps them from taking one until
/// it has forked: so no lock, no first use of an object and no table of the runtime library's time functions
/// is left half-done in the child. It waits for 2 seconds at most; see HasLostOwner for what a thread holds
/// that takes longer, or that waits for the forking thread itself.
namespace Presence
{

/// The number of threads that can be listed at a time. What exceeds it is not waited for.
constexpr int THREADS_MAX = 4096;

/// Not 0 while a thread forks.
extern std::atomic<int> g_iForking;

/// Called when the library is loaded.
void WatchForks();

/// Forks between the first process and this one.
unsigned int GetForkCount();

/// Lists the calling thread.
void Register(ForcedEndState & oState);

/// The calling thread, about to take its first lock, waits until no other thread forks.
void WaitForFork(ThreadPresence & oPresence);

/// Waits until each other thread is out of the bus, or waits there for a lock of the calling thread, and holds
/// none. False if that has not come within 2 seconds.
bool WaitUntilOthersLeaveBus();

/// Whether a lock's owner was a thread of the process that this one was forked from, and is no thread of this
/// one. The lock then is free, and what it guards is as that thread has left it.
bool HasLostOwner(std::uint64_t iOwner);

/// The calling thread is about to end without unwinding.
void Abandon(ThreadPresence * pPresence);

} // namespace Presence

} // namespace tsl
