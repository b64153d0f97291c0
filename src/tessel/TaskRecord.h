#pragma once

#include <tessel/Export.h>
#include <tessel/String.h>

#include <atomic>
#include <memory>

namespace tsl
{

class Task;
class TaskContext;
class TaskProcessor;

} // namespace tsl

namespace tsl::TesselDetails
{

/// What a machine keeps about a task. Only the library's own code uses it.
struct TaskRecord
{
    TSL_HIDDEN TaskRecord(TaskProcessor * pTheParent, String const & sTheName);
    TSL_HIDDEN TaskRecord(TaskRecord && oSource);
    TSL_HIDDEN ~TaskRecord();

    TaskProcessor * pParent;
    String sName;

    // The context of the running step, null between steps. Atomic, so that a step which a second thread begins by
    // mistake is detected and does no harm.
    std::atomic<TaskContext *> pContext{nullptr};

    // Of a machine: its current task, null before the first step.
    std::unique_ptr<Task> pCurrentTask;
};

/// Owns the record of a task. Copies share one record.
///
/// The record is a part of the task until the first copy moves it to the heap: a machine makes and deletes a task
/// with every transition, and so allocates once for it, not twice (R05).
class TaskRecordOwner
{
public:
    TSL_HIDDEN TaskRecordOwner(TaskProcessor * pParent, String const & sName);
    TSL_HIDDEN TaskRecordOwner(TaskRecordOwner const & oSource);
    TSL_HIDDEN TaskRecordOwner & operator=(TaskRecordOwner const & oSource);
    TSL_HIDDEN ~TaskRecordOwner();

    TaskRecord * operator->() const { return m_pRecord; }

    /// Whether the record is destroyed with this object.
    bool IsLastOwner() const { return !m_pShared || m_pShared.use_count() == 1; }

private:
    /// Moves the record to the heap unless it is there already.
    TSL_HIDDEN std::shared_ptr<TaskRecord> const & Share() const;

    mutable TaskRecord m_oOwn;
    mutable std::shared_ptr<TaskRecord> m_pShared;

    // The one of the two that is in use.
    mutable TaskRecord * m_pRecord;
};

} // namespace tsl::TesselDetails
