#pragma once

#include <tesselkit/MachineNames.h>

#include <tessel/Result.h>

namespace tsl
{

class TaskProcessor;

/// Checks the table of a machine, and those of the machines inside, before anything runs by them. A test needs one
/// line:
///
///     Crossing oCrossing;
///     EXPECT_STREQ(tsl::MachineCheck::Run(oCrossing).GetTextWithCauses().c_str(), "");
///
/// The faults:
///
/// - a table without a first task;
/// - a row whose task is never entered;
/// - a row to an id that nobody has registered, or whose function makes no task of that id;
/// - a result without a row: one that oNames has for the task, the end of a machine inside, or every result of a task
///   that has no row at all;
/// - a machine that cannot end, or that cannot end any more once it is in some task: no rows lead from there to
///   Task::TASK_FINE, nor to a task for which oNames has Task::TR_RETURN. So a machine that is to run for ever is
///   reported, too;
/// - the end of a machine inside that leads to the same machine, which does not begin again: the step never ends.
///
/// What a task returns is known from oNames only: a result without a row that has no name there is not found.
class MachineCheck
{
public:
    MachineCheck() = delete;

    /// Success, or a failure of code 2 whose history has an entry for each fault, in the order of the tables. Each
    /// names the machine and the row.
    ///
    /// Each task is made with its function in TaskFactory and destroyed again, but never run. No step of the machine
    /// may run meanwhile. A machine that is inside of several others is checked once.
    [[nodiscard]] static Result Run(TaskProcessor & oMachine, MachineNames const & oNames = MachineNames());
};

} // namespace tsl
