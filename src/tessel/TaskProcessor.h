#pragma once

#include <tessel/Export.h>
#include <tessel/Task.h>

namespace tsl
{

class TaskTransitionList;

/// A state machine. It makes its tasks with TaskFactory, one at a time, runs the current one and looks up the next
/// one in the table of the derived class. It is itself a task, so a state can be a whole machine.
///
///     class Clock : public tsl::TaskProcessor
///     {
///     public:
///         Clock() : TaskProcessor("Clock", nullptr) {}
///         int GetTaskID() const override { return eClock; }
///         tsl::TaskTransitionList const & GetTaskTransitionList() const override { return m_oTransitions; }
///     };
///     tsl::TaskContext oContext(new Clock); // owns the machine; oContext.Process() is one step
///
/// A step of the topmost machine takes transitions until a task returns Task::TR_REMAIN or the machine has ended;
/// the next step continues in that task. When a task returns Task::TR_RETURN, as that of Task::TASK_FINE does, it
/// gets its exit and the machine has ended. A topmost machine then returns TR_RETURN. A nested one returns
/// TR_PROCEED, for which its parent's table must have a transition. A machine that has ended does not begin again.
///
/// A transition exits the current task, makes the next one, calls OnTaskSwitch, deletes the old task and enters the
/// new one. If it leads to the current task's own id, only DoProcess of the same object is called again, in the
/// same step.
///
/// Assertion failures: the table has no first transition, or none for a task's result; the factory has no function
/// for an id, or it returns null or the current task. The current task then remains, and the next step calls it
/// again.
///
/// The thread rules are those of Task. The destructor deletes the current task without an exit. Copies share the
/// current task as well.
class TSL_EXPORT TaskProcessor : public Task
{
public:
    TaskProcessor(TaskProcessor const & oSource);
    TaskProcessor & operator=(TaskProcessor const & oSource);
    ~TaskProcessor() override;

    /// Not supported: an assertion failure.
    MessageFilter const & GetDefinedInputFilter() const override;

    /// The machine's table, which must be complete before the first step and last as long as the machine. A task
    /// that the factory makes for an id must return that id from GetTaskID.
    virtual TaskTransitionList const & GetTaskTransitionList() const = 0;

    /// The task that the next step continues with, or the last one of a machine that has ended; null before the first
    /// step. The pointer holds until the next step. Only for the thread that runs the machine.
    Task const * GetCurrentTask() const;

protected:
    /// The topmost machine has no parent, a null pointer.
    TaskProcessor(String const & sName, TaskProcessor * pParent);

    int DoProcess() override;

    /// A new task is about to become the current one. The old one, null the first time, has had its exit; the new
    /// one has not been entered yet. Does nothing by default.
    virtual void OnTaskSwitch(Task const * pOldTask, Task const & oNewTask);

private:
    friend struct TaskEngine;
};

} // namespace tsl
