#pragma once

#include <tessel/String.h>

#include <map>
#include <vector>

namespace tsl
{

/// The names of a program's tasks and results, for MachineCheck and MachineDrawing.
///
///     tsl::MachineNames oNames;
///     oNames.AddTask(PHASE_RED, "red light");
///     oNames.AddResult(PHASE_RED, RESULT_MODE_CHANGE, "mode change");
///
/// A task without a name here has that of Task::GetTaskName, a result its number. The named results are also what
/// MachineCheck knows about a task: each of them needs a row. One thread at a time uses an object.
class MachineNames
{
public:
    /// Names a task.
    void AddTask(int iTaskId, String const & sName);

    /// Names a result of the task, which may also be Task::TR_PROCEED or Task::TR_RETURN.
    void AddResult(int iTaskId, int iResultId, String const & sName);

    /// The given name, or sDefault.
    String GetTask(int iTaskId, String const & sDefault) const;
    String GetResult(int iTaskId, int iResultId, String const & sDefault) const;

    /// The results of the task that have a name, in ascending order.
    std::vector<int> GetResults(int iTaskId) const;

private:
    std::map<int, String> m_oTasks;

    // By task, and then by result.
    std::map<int, std::map<int, String>> m_oResults;
};

} // namespace tsl
