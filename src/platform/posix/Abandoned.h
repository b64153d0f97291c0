#pragma once

#include "platform/Processes.h"

#include <atomic>
#include <cstdint>
#include <memory>

namespace tsl::Platform
{

/// A flag that a forked child shares with this process.
class SharedFlag
{
public:
    SharedFlag() = default;
    ~SharedFlag();
    SharedFlag(SharedFlag const &) = delete;
    SharedFlag & operator=(SharedFlag const &) = delete;

    /// Has to be done first. Returns the system's error number, 0 for success.
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

    /// Tells the process from a later one with the same id; 0 if unknown.
    std::uint64_t iStartTime = 0;

    /// Made for a suspended start; set by the child once it was continued.
    SharedFlag oContinued;

    /// The next one of a circle.
    ProcessRecord * pNext = nullptr;
};

/// Whether the process has been stopped, before its program is entered, ever since its suspended start.
bool IsHeldAtStart(ProcessRecord const & oRecord);

/// Takes over a child that runs and is not used any more, without a descriptor.
void Abandon(std::unique_ptr<ProcessRecord> pRecord);

/// Reaps those abandoned children that have ended among the next 64, without a wait. No other process is ever
/// reaped, not even one that was given the same id.
void ReapAbandoned();

/// The same, but does nothing within ten milliseconds after the last time.
void ReapAbandonedAtTimes();

} // namespace tsl::Platform
