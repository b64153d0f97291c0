#pragma once

#include <tessel/Export.h>
#include <tessel/MessageFilter.h>
#include <tessel/String.h>
#include <tessel/TaskRecord.h>
#include <tessel/ValueString.h>

#include <vector>

namespace tsl
{

class Message;
class TaskContext;
class TaskProcessor;

/// The ids of a task and of its ancestors up to the topmost machine. One thread at a time uses it.
class TSL_EXPORT TaskStack
{
public:
    TaskStack() = default;

    /// Appends an id.
    void Push(int const & iTaskId) { m_vIds.push_back(iTaskId); }

    /// The number of ids.
    unsigned int GetSize() const { return static_cast<unsigned int>(m_vIds.size()); }
    bool IsEmpty() const { return m_vIds.empty(); }

    /// Index 0 is the id that was pushed first. An index outside the stack is an assertion failure.
    int & operator[](int iIndex);
    int const & operator[](int iIndex) const;

private:
    std::vector<int> m_vIds;
};

/// One state of a hierarchical state machine. A program derives its states from it, gives each an id and registers
/// a creation function for that id in TaskFactory. The machine, a TaskProcessor, makes the task when it enters the
/// state and deletes it when it leaves.
///
///     class Ring : public tsl::Task
///     {
///     public:
///         explicit Ring(tsl::TaskProcessor * pParent) : Task("Ring", pParent) {}
///         int GetTaskID() const override { return eRing; }
///         tsl::MessageFilter const & GetDefinedInputFilter() const override { return m_oFilter; }
///     protected:
///         int DoProcess() override { return ++m_iRings < 3 ? TR_REMAIN : TR_PROCEED; }
///     private:
///         tsl::MessageFilterNoMessage m_oFilter;
///         int m_iRings = 0;
///     };
///
/// The machine calls TaskEntry once, Process once per step of the machine and again when a transition leads back to
/// the same task, and TaskExit once. What must outlive the task belongs into the variables of its TaskContext. The
/// context exists only while one of these three calls runs: an operation that needs it is an assertion failure at
/// any other time, for instance in the constructor.
///
/// Ids and results are two separate ranges of numbers. The negative ones are reserved.
///
/// One thread at a time drives a machine. A call that meets a running one of the same task, on a second thread or
/// by recursion, is an assertion failure. An exception reaches the caller of the step; the next step is possible
/// after it.
///
/// Copies share name, parent and context. No copy may be assigned to while a step runs.
class TSL_EXPORT Task
{
public:
    static constexpr int TASK_INIT = -1;            ///< the source of a machine's first transition
    static constexpr int TASK_FINE = -2;            ///< the end of a machine; a destination only
    static constexpr int RESERVED_TASK_ID_MAX = -1; ///< own ids are above

    static constexpr int TR_REMAIN =
        -1; ///< DoProcess: end the machine's step; DoTaskEntry: go on to DoProcess
    static constexpr int TR_PROCEED = -2;               ///< take the transition of this name
    static constexpr int TR_RETURN = -3;                ///< leave the machine
    static constexpr int RESERVED_TRANSION_ID_MAX = -1; ///< own results are above

    Task(Task const & oSource);
    Task & operator=(Task const & oSource);
    virtual ~Task();

    /// The id under which the class is registered in TaskFactory.
    virtual int GetTaskID() const = 0;

    /// The messages that the task expects. The library does not use it; a program may.
    virtual MessageFilter const & GetDefinedInputFilter() const = 0;

    /// Call DoProcess, DoTaskEntry and DoTaskExit with the context. TaskProcessor calls them.
    int Process(TaskContext & oContext);
    int TaskEntry(TaskContext & oContext);
    void TaskExit(TaskContext & oContext);

    /// The reference holds as long as the task.
    String const & GetTaskName() const;

    /// "TR_REMAIN", "TR_PROCEED", "TR_RETURN", or "USER_DEFINED" for any other number.
    static char const * GetTaskResultName(int iTaskResult);

protected:
    /// An empty name and the task itself as its parent are assertion failures. Only a topmost machine has no
    /// parent, a null pointer. The parent must outlive the task.
    Task(String const & sName, TaskProcessor * pParent);

    /// The task has become the current one. A result other than TR_REMAIN counts as that of DoProcess, which is
    /// then not called.
    virtual int DoTaskEntry();

    /// The task's work. TR_REMAIN ends the machine's step; the next step calls it again. Any other result is looked
    /// up in the machine's table.
    virtual int DoProcess() = 0;

    /// The task will not be called again.
    virtual void DoTaskExit();

    /// Sends a copy of the message to the application.
    virtual void Send(Message const & oMessage);

    /// The next message from the application, which the caller deletes, or null. Waits up to iTimeout milliseconds:
    /// 0 does not wait, a negative number waits without limit.
    virtual Message * Receive(int iTimeout);

    /// The same for the first message that the filter accepts. All messages before it are deleted.
    virtual Message * ReceiveFilter(MessageFilter const & oFilter, int iTimeout);

    /// Sleeps for iDuration milliseconds. On a TaskContextThread an alertable sleep ends early when a signal has
    /// been handled on the thread.
    virtual void Wait(int iDuration, bool bAlertable);

    /// Deletes the messages that have not been received yet.
    virtual void ClearReveiveBuffer();

    /// Deletes the messages that the application has not read yet.
    virtual void ClearSendBuffer();

    /// With a copy of the name.
    void SetTaskName(String const & sName);

    /// The machine of the task, null for the topmost one, and the context of the running call.
    TaskProcessor * GetParent() const { return m->pParent; }
    TaskContext & GetContext() const;

    /// Variables of the whole machine, which are kept as long as its context. A number and a text may have the same
    /// name. A null name is an assertion failure; without the variable, the default is returned.
    void SetVar(ValueString const & sName, int iValue);
    void SetVar(ValueString const & sName, ValueString const & sValue);
    int GetVar(ValueString const & sName, int iDefault) const;
    ValueString GetVar(ValueString const & sName, ValueString const & sDefault) const;

    /// The same for variables of this place in the tree of tasks: a later task with the same id below the same
    /// ancestors has them again.
    void SetLocalVar(ValueString const & sName, int iValue);
    void SetLocalVar(ValueString const & sName, ValueString const & sValue);
    int GetLocalVar(ValueString const & sName, int iDefault) const;
    ValueString GetLocalVar(ValueString const & sName, ValueString const & sDefault) const;

    /// Whether the application wants tasks of this name to simulate; see TaskContextMessage. iMode is ignored.
    bool GetSimulationMode(int iMode) const;

    /// Appends the ids of this task and of its ancestors, that of the topmost machine last. Also allowed between
    /// steps.
    void AcquireTaskStack(TaskStack & oStack) const;

private:
    friend struct TaskEngine;

    TesselDetails::TaskRecordOwner m;
};

} // namespace tsl
