#pragma once

#include <tessel/Export.h>
#include <tessel/Task.h>

namespace tsl
{

class TaskTransitionList;

/// A state machine. It makes its tasks with TaskFactory, one at a time, runs the current one and finds the
/// next one in the table that a subclass gives. It is a task itself, so a state can be a whole machine.
///
/// One call of Process on the topmost machine is one step: it takes as many transitions as come until a
/// task answers Task::TR_REMAIN, or until the machine has ended; the next step goes on in that task. A
/// machine ends with the exit of the task that answers Task::TR_RETURN, as the one behind Task::TASK_FINE
/// does. The topmost machine then answers Task::TR_RETURN, a nested one Task::TR_PROCEED, for which its
/// parent's table has to have a transition. A machine that has ended does not begin again.
///
/// A transition exits the current task, makes the next one, calls OnTaskSwitch, deletes the old one and
/// enters the new one. If it leads back to the current task's own id, nothing of this happens: the same
/// object goes on with its DoProcess in the same step.
///
/// Assertion failures: the table has no first transition, or none for a task's result; the factory knows
/// no task of an id, or its function gives null or the current task. The machine then stands in the task in
/// which it stood, and the next step tries again there.
///
/// A machine that is deleted in the middle deletes its current task without an exit. Copies share the
/// current task as well.
class TSL_EXPORT TaskProcessor : public Task
{
public:
    TaskProcessor(TaskProcessor const & oSource);
    TaskProcessor & operator=(TaskProcessor const & oSource);
    ~TaskProcessor() override;

    /// Not to be called: an assertion failure.
    MessageFilter const & GetDefinedInputFilter() const override;

    /// The machine's table; it must be complete before the first step. The task that the factory makes for
    /// an id in it must answer that id from GetTaskID.
    virtual TaskTransitionList const & GetTaskTransitionList() const = 0;

protected:
    /// A null parent is that of the topmost machine.
    TaskProcessor(String const & sName, TaskProcessor * pParent);

    int DoProcess() override;

    /// A new task is about to become the current one. The old one, null the first time, has had its exit;
    /// the new one has not been entered yet.
    virtual void OnTaskSwitch(Task const * pOldTask, Task const & oNewTask);

private:
    friend struct TaskEngine;
};

} // namespace tsl
