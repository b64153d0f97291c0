#pragma once

#include <atomic>

/// Sleeping until another thread changes a value.
namespace tsl::Platform
{

/// Suspends the calling thread while the value is iValue, until it is woken. May return early.
void WaitWhile(std::atomic<int> & oValue, int iValue);

/// Wake one thread, or all, that sleep in WaitWhile for that value. Call them after a change of the value.
void WakeOne(std::atomic<int> & oValue);
void WakeAll(std::atomic<int> & oValue);

} // namespace tsl::Platform
