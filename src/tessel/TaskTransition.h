#pragma once

#include <tessel/Export.h>
#include <tessel/Result.h>

#include <unordered_map>
#include <utility>
#include <vector>

namespace tsl
{

/// The transitions of one task: for each of its results the id of the next task. See TaskTransitionList.
///
/// One thread fills it; after that any number may read it. Adding and lookup take constant time on average.
class TSL_EXPORT TaskTransition
{
public:
    TaskTransition() = default;

    /// Has one pair, which is not checked.
    TaskTransition(int iResultId, int iDestinationTaskId);

    /// The number of results that have a transition.
    int GetCount() const;

    /// Adds a pair; a result that is there already gets the new destination. Code 2, and nothing is added, for a
    /// result below 0 other than Task::TR_PROCEED, and for a destination below 0 other than Task::TASK_FINE.
    [[nodiscard]] Result AddTransition(int iResultId, int iDestinationTaskId);

    /// Returns false for a result without a transition; iNextTaskId is then unchanged.
    bool GetNextTaskId(int iResultId, int & iNextTaskId) const;

    /// Each result and its destination, in the order in which the results were first added. The reference holds as
    /// long as the object.
    std::vector<std::pair<int, int>> const & GetPairs() const { return m_vPairs; }

private:
    /// Returns whether the result is there. iIndex becomes its index, or the number of pairs.
    bool FindResult(int iResultId, unsigned int & iIndex) const;

    // Results and destinations, in the order in which the results were first added.
    std::vector<std::pair<int, int>> m_vPairs;

    // The index of each result; empty while there are few.
    std::unordered_map<int, unsigned int> m_oPlaces;
};

/// The table of a whole machine: for a task and its result the id of the next task.
///
///     tsl::TaskTransitionList oTransitions;
///     tsl::Result oResult = oTransitions.AddTransition(Task::TASK_INIT, Task::TR_PROCEED, eRing);
///     oResult.InsertFront(oTransitions.AddTransition(eRing, Task::TR_PROCEED, Task::TASK_FINE));
///
/// Task::TASK_INIT with Task::TR_PROCEED leads to the first task; Task::TASK_FINE as a destination ends the
/// machine. A destination that is the source itself calls the task again, see TaskProcessor.
///
/// One thread fills it; after that any number may read it. Adding and lookup take constant time on average.
class TSL_EXPORT TaskTransitionList
{
public:
    TaskTransitionList() = default;

    /// The number of source tasks.
    int GetCount() const;

    /// Adds a transition. Code 2 for a source below 0 other than Task::TASK_INIT, for a result of Task::TASK_INIT
    /// other than Task::TR_PROCEED, and for what TaskTransition refuses. In the last case a new source task remains
    /// in the table, without transitions.
    [[nodiscard]] Result AddTransition(int iSourceTaskId, int iResultId, int iDestinationTaskId);

    /// Returns false without such a transition; iNextTaskId is then unchanged.
    bool GetNextTaskId(int iSourceTaskId, int iResultId, int & iNextTaskId) const;

    /// Each source task and its transitions, in the order in which the tasks were first added. The reference holds as
    /// long as the table.
    std::vector<std::pair<int, TaskTransition>> const & GetTasks() const { return m_vTasks; }

protected:
    /// Returns whether the task is there. iIndex becomes its index, or the number of tasks.
    bool FindTask(int iTaskId, unsigned int & iIndex) const;

    /// Adds the task if it is not there. iIndex becomes its index.
    void AddTask(int iTaskId, unsigned int & iIndex);

private:
    // In the order in which the tasks were first added.
    std::vector<std::pair<int, TaskTransition>> m_vTasks;

    // The index of each task; empty while there are few.
    std::unordered_map<int, unsigned int> m_oPlaces;
};

} // namespace tsl
