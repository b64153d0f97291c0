#pragma once

#include <cstdint>

/// Between the list of threads, which is the same for all systems, and what a system adds to it.
namespace tsl::Presence
{

// What the list asks of the system.

/// The id of the calling thread, not a cached one.
unsigned long AskThreadId();

/// Whether a thread of this process has that id.
bool ThreadExists(unsigned long iThreadId);

/// A memory barrier on all threads. The caller has set a flag before. Another thread stores something and
/// then reads the flag: either that store is visible after this call, or that thread sees the flag.
void ShowStores();

// What a fork needs of the list.

void LockList();
void UnlockList();

/// The number of the thread that was added last.
std::uint64_t GetLastThread();

/// The caller holds the list's lock.
void WaitUntilOthersHoldNoLock();

/// Removes all threads but the calling one. The caller holds the list's lock.
void KeepThisThread();

} // namespace tsl::Presence
