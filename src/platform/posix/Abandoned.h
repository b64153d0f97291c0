#pragma once

#include "platform/Processes.h"

#include <atomic>
#include <cstdint>
#include <memory>

namespace tsl::Platform
{

/// A flag in memory that is shared with a forked child.
class SharedFlag
{
public:
    SharedFlag() = default;
    ~SharedFlag();
    SharedFlag(SharedFlag const &) = delete;
    SharedFlag & operator=(SharedFlag const &) = delete;

    /// Creates the flag. Required before IsSet and Set. Returns the system's error number, 0 for success.
    [[nodiscard]] int Make();

    bool IsMade() const { return m_pFlag != nullptr; }
    bool IsSet() const { return m_pFlag->load(std::memory_order_relaxed); }
    void Set() { m_pFlag->store(true, std::memory_order_relaxed); }

private:
    std::atomic<bool> * m_pFlag = nullptr;
};

struct ProcessRecord
{
    int iProcessId = 0;

    /// Distinguishes the process from a later one with the same id. 0 if unknown.
    std::uint64_t iStartTime = 0;

    /// Created for a suspended start. The child sets it after it was continued.
    SharedFlag oContinued;

    /// The next record of the circular list.
    ProcessRecord * pNext = nullptr;
};

/// Whether the process was started suspended and has never been continued.
bool IsHeldAtStart(ProcessRecord const & oRecord);

/// Takes over a running child that is no longer used, so that it is reaped later. Keeps no descriptor open.
void Abandon(std::unique_ptr<ProcessRecord> pRecord);

/// Checks the next 64 abandoned children and reaps those that have ended. Never waits. No other process is
/// ever reaped, even if it has got the same id.
void ReapAbandoned();

/// The same, but does nothing if the last check was less than ten milliseconds ago.
void ReapAbandonedAtTimes();

} // namespace tsl::Platform
