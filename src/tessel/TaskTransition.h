#pragma once

#include <tessel/Export.h>
#include <tessel/Result.h>

#include <unordered_map>
#include <utility>
#include <vector>

namespace tsl
{

/// Where a task of a machine leads to: for each of its results the id of the next task.
///
/// A table is filled by one thread and afterwards only read, by any number of them. To add a pair or to find one
/// takes the same time on average, whatever their number.
class TSL_EXPORT TaskTransition
{
public:
    TaskTransition() = default;

    /// With one pair, which is not checked.
    TaskTransition(int iResultId, int iDestinationTaskId);

    /// Number of results that lead somewhere.
    int GetCount() const;

    /// Adds a pair. Code 2, and nothing is added, for a result that is neither Task::TR_PROCEED nor 0 or
    /// above, and for a destination that is neither Task::TASK_FINE nor 0 or above. A result that is there
    /// gets the new destination.
    [[nodiscard]] Result AddTransition(int iResultId, int iDestinationTaskId);

    /// False for a result that leads nowhere; iNextTaskId then stays as it was.
    bool GetNextTaskId(int iResultId, int & iNextTaskId) const;

private:
    /// The place of the result, or the number of pairs if there is none.
    bool FindResult(int iResultId, unsigned int & iIndex) const;

    // Of result and destination, in the order in which the results were first added.
    std::vector<std::pair<int, int>> m_vPairs;

    // The place of each result; empty as long as there are few.
    std::unordered_map<int, unsigned int> m_oPlaces;
};

/// The table of a whole machine: for a task and its result the id of the next task.
///
/// Task::TASK_INIT with Task::TR_PROCEED leads to the first task; Task::TASK_FINE as a destination ends the
/// machine. A destination that is the source itself makes the task run on, see TaskProcessor. To add a transition or
/// to find one takes the same time on average, whatever their number.
class TSL_EXPORT TaskTransitionList
{
public:
    TaskTransitionList() = default;

    /// Number of source tasks.
    int GetCount() const;

    /// Adds a transition. Code 2 for a source that is neither Task::TASK_INIT nor 0 or above, for a result
    /// of Task::TASK_INIT other than Task::TR_PROCEED, and for whatever TaskTransition refuses; in this
    /// last case a new source task stays in the table without transitions.
    [[nodiscard]] Result AddTransition(int iSourceTaskId, int iResultId, int iDestinationTaskId);

    /// False where the table has no answer; iNextTaskId then stays as it was.
    bool GetNextTaskId(int iSourceTaskId, int iResultId, int & iNextTaskId) const;

protected:
    /// The place of the task, or the number of tasks if it is not there.
    bool FindTask(int iTaskId, unsigned int & iIndex) const;

    /// The place of the task, which is added if it is not there.
    void AddTask(int iTaskId, unsigned int & iIndex);

private:
    // In the order in which the tasks were first added.
    std::vector<std::pair<int, TaskTransition>> m_vTasks;

    // The place of each task; empty as long as there are few.
    std::unordered_map<int, unsigned int> m_oPlaces;
};

} // namespace tsl
