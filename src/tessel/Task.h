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

/// The ids of the tasks from one of them up to the root of its tree.
class TSL_EXPORT TaskStack
{
public:
    TaskStack() = default;

    /// Appends an id.
    void Push(int const & iTaskId) { m_vIds.push_back(iTaskId); }

    unsigned int GetSize() const { return static_cast<unsigned int>(m_vIds.size()); }
    bool IsEmpty() const { return m_vIds.empty(); }

    /// Index 0 is what was pushed first. An index outside the stack is an assertion failure.
    int & operator[](int iIndex);
    int const & operator[](int iIndex) const;

private:
    std::vector<int> m_vIds;
};

/// One state of a hierarchical state machine. An application derives its states from it, gives each an id
/// and registers a creation function for that id in TaskFactory; a TaskProcessor makes the task when the
/// machine comes to it and deletes it when it leaves.
///
/// The machine calls the three steps: TaskEntry once, Process once per step of the machine and again when
/// a transition leads back to the same task, TaskExit once. The members of a task last that long and no
/// longer; what must outlive it belongs in the variables of its TaskContext. The context is there while
/// one of the three steps runs: every operation that needs it fails the assertion "m->pContext!=NULL" at
/// any other time, in the constructor above all.
///
/// Ids and results are two separate ranges of numbers, in which the negative ones are reserved.
///
/// A machine is driven by one thread at a time. A step that meets another one of the same task, from a
/// second thread or out of the first one, is an assertion failure. An exception out of a step passes
/// through to the caller; the next step is possible then.
///
/// Copies share one record of name, parent and context, and none may be assigned to while a step runs.
class TSL_EXPORT Task
{
public:
    static constexpr int TASK_INIT = -1; ///< where a machine begins; the source of its first transition
    static constexpr int TASK_FINE = -2; ///< where a machine ends; a destination only
    static constexpr int RESERVED_TASK_ID_MAX = -1; ///< own ids are above

    static constexpr int TR_REMAIN = -1; ///< from Process: the machine's step ends here; from an entry: go on
    static constexpr int TR_PROCEED = -2;               ///< take the transition of this name
    static constexpr int TR_RETURN = -3;                ///< leave the machine
    static constexpr int RESERVED_TRANSION_ID_MAX = -1; ///< own results are above

    Task(Task const & oSource);
    Task & operator=(Task const & oSource);
    virtual ~Task();

    /// The id under which the class is registered in TaskFactory.
    virtual int GetTaskID() const = 0;

    /// The messages that the task expects. For the application's own use.
    virtual MessageFilter const & GetDefinedInputFilter() const = 0;

    /// The three steps; the first two return what the task wants next. TaskProcessor calls them, and
    /// TaskContext calls Process of the topmost processor.
    int Process(TaskContext & oContext);
    int TaskEntry(TaskContext & oContext);
    void TaskExit(TaskContext & oContext);

    String const & GetTaskName() const;

    /// "TR_REMAIN", "TR_PROCEED", "TR_RETURN", or "USER_DEFINED" for any other number.
    static char const * GetTaskResultName(int iTaskResult);

protected:
    /// The name must not be empty, and the parent not this task itself: assertion failures. A null parent
    /// is that of a topmost processor. The parent must outlive the task.
    Task(String const & sName, TaskProcessor * pParent);

    /// The task has become the current one. Anything but TR_REMAIN is taken as a result of DoProcess,
    /// which is then not called.
    virtual int DoTaskEntry();

    /// The task's work. TR_REMAIN gives the thread back to the caller until the machine's next step.
    virtual int DoProcess() = 0;

    /// The task will not be called again.
    virtual void DoTaskExit();

    /// Hands a copy of the message to the application.
    virtual void Send(Message const & oMessage);

    /// The next message from the application, which the caller deletes, or null. Waits so many
    /// milliseconds for one; 0 does not wait, a negative time waits for ever.
    virtual Message * Receive(int iTimeout);

    /// The same for the first message that the filter takes. All messages before it are lost.
    virtual Message * ReceiveFilter(MessageFilter const & oFilter, int iTimeout);

    /// Sleeps so many milliseconds. An alertable sleep lets the platform's asynchronous calls run on a
    /// TaskContextThread.
    virtual void Wait(int iDuration, bool bAlertable);

    /// Deletes the messages that have not been received yet.
    virtual void ClearReveiveBuffer();

    /// Deletes the messages that the application has not read yet.
    virtual void ClearSendBuffer();

    void SetTaskName(String const & sName);

    TaskProcessor * GetParent() const { return m->pParent; }
    TaskContext & GetContext() const;

    /// Variables of the whole machine; they live as long as its context. Numbers and texts are separate,
    /// even under one name. A null name is an assertion failure, and an absent one gives the default.
    void SetVar(ValueString const & sName, int iValue);
    void SetVar(ValueString const & sName, ValueString const & sValue);
    int GetVar(ValueString const & sName, int iDefault) const;
    ValueString GetVar(ValueString const & sName, ValueString const & sDefault) const;

    /// The same for variables that belong to this place in the tree of tasks: whenever the machine comes
    /// back to the same id below the same ancestors, they are there again.
    void SetLocalVar(ValueString const & sName, int iValue);
    void SetLocalVar(ValueString const & sName, ValueString const & sValue);
    int GetLocalVar(ValueString const & sName, int iDefault) const;
    ValueString GetLocalVar(ValueString const & sName, ValueString const & sDefault) const;

    /// Whether the application wants tasks of this name simulated. The mode does not come back.
    bool GetSimulationMode(int iMode) const;

    /// Appends the ids of this task and of its ancestors, the root's last. Also allowed between steps.
    void AcquireTaskStack(TaskStack & oStack) const;

private:
    friend struct TaskEngine;

    TesselDetails::TaskRecordOwner m;
};

} // namespace tsl
