#pragma once

#include <atomic>
#include <cstdint>

namespace tsl
{

struct ForcedEndState;

/// What other threads may read about a thread, even after it has ended: whether it holds locks and calls the
/// bus.
///
/// The thread itself writes it without memory barriers, to keep locks fast (R02, R06). A reader first
/// executes a barrier on all threads of the process (ShowStores in ThreadList.h).
struct alignas(64) ThreadPresence
{
    /// The thread holds a lock of the library or is about to take one. False while it waits for its first
    /// lock.
    std::atomic<bool> bLocking{false};

    /// Counts the begins and ends of its waits for a lock: odd while it waits.
    std::atomic<unsigned int> iWaits{0};

    /// The number of nested calls of the global bus that it is in.
    std::atomic<unsigned int> iVisits{0};

    /// 0 if the entry belongs to no thread.
    std::atomic<unsigned long> iThreadId{0};
};

/// The list of threads that use the library, for a thread that has to wait until the others have left
/// something: at a fork, and at the end of the process.
///
/// A thread that forks waits until the others hold no lock of the library, and keeps them from taking one
/// until it has forked. So the child finds no lock of another thread held, no static object half initialised,
/// and the time functions' tables complete. The wait ends after 2 seconds, and after 50 milliseconds for a
/// thread that may be waiting for the forking thread itself; HasLostOwner then frees the locks.
namespace Presence
{

/// The capacity of the list. Nobody waits for threads beyond it.
constexpr int THREADS_MAX = 4096;

/// 1 while a thread forks, else 0.
extern std::atomic<int> g_iForking;

/// Installs the handlers at fork. Called once, when the library is loaded.
void WatchForks();

/// The number of forks between the first process and this one.
unsigned int GetForkCount();

/// Adds the calling thread to the list.
void Register(ForcedEndState & oState);

/// Makes the calling thread, which is about to take its first lock, wait until no other thread forks.
void WaitForFork(ThreadPresence & oPresence);

/// Waits until no other thread is in a call of the bus. A thread does not count that holds no lock and waits
/// there for a lock, if the calling thread holds one: it may be that one. False after 2 seconds.
bool WaitUntilOthersLeaveBus();

/// Whether the owner of a lock does not exist: in a forked child it was a thread of the parent process, and
/// some systems end all other threads when the process ends. The lock then counts as free; the data that it
/// guards may be half changed.
bool HasLostOwner(std::uint64_t iOwner);

/// Whether the process ends and the system has ended all threads but the calling one, wherever they were.
bool AreOthersGone();

/// Clears the entry of the calling thread, which is about to end without unwinding. Null does nothing.
void Abandon(ThreadPresence * pPresence);

} // namespace Presence

} // namespace tsl
