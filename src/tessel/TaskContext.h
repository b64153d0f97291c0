#pragma once

#include <tessel/Export.h>
#include <tessel/Pipe.h>
#include <tessel/String.h>
#include <tessel/ValueString.h>

#include <memory>

namespace tsl
{

class Message;
class MessageFilter;
class TaskContextMessage;
class TaskProcessor;
class TaskStack;

/// What lasts of a state machine across its tasks: the machine itself, a queue of messages in each
/// direction, the variables and the settings for simulation. The application holds the public side; the
/// tasks reach the rest through the operations of Task.
///
/// WriteMessage, ReadMessage and the operations on the queues may be called while the machine runs on
/// another thread. All else belongs to the thread that runs the machine, a TaskContextMessage for
/// WriteMessage included.
///
/// A variable or a setting is set and found in O(log n) for n of them.
///
/// Copies share one record, the machine included, and none may be assigned to while a step runs.
class TSL_EXPORT TaskContext
{
public:
    /// Takes the topmost machine over and deletes it in the end. Null is an assertion failure.
    explicit TaskContext(TaskProcessor * pProcessor);
    TaskContext(TaskContext const & oSource);
    TaskContext & operator=(TaskContext const & oSource);
    virtual ~TaskContext();

    /// One step of the machine. What the tasks throw passes through.
    virtual void Process();

    /// Puts a copy of the message into the queue to the machine. A TaskContextMessage is acted upon at
    /// once, on this thread, and not queued.
    void WriteMessage(Message const & oMessage);

    /// Takes the next message that the machine has sent, which the caller deletes; null at once if there
    /// is none.
    Message * ReadMessage();

protected:
    /// The two queues, made by the constructor, which does not call what a subclass overrides.
    virtual Pipe<Message> * CreateInputQueue() const;
    virtual Pipe<Message> * CreateOutputQueue() const;

    /// What the tasks do with the queues; see Task. The time-out is used up by waiting: what is left of
    /// it when a message comes stays in iTimeout.
    virtual void Send(Message const & oMessage);
    virtual Message * Receive(int & iTimeout);

    /// The next message, or null at once.
    virtual Message * Receive();
    virtual void ClearReveiveBuffer();
    virtual void ClearSendBuffer();

    /// Sleeps so many milliseconds. All waiting for messages goes through it, in slices of at most 100 ms.
    virtual void Wait(int iDuration, bool bAlertable);

    /// The first message that the filter takes, which the caller deletes, or null. All messages before it
    /// are deleted. Only waiting at an empty queue uses the time-out up; 0 looks at one message.
    Message * ReceiveFilter(MessageFilter const & oFilter, int iTimeout);

    TaskProcessor & GetTaskProcessor() const;

    /// The variables of the whole machine; see Task.
    void SetVar(ValueString const & sName, int iValue);
    void SetVar(ValueString const & sName, ValueString const & sValue);
    int GetVar(ValueString const & sName, int iDefault) const;
    ValueString GetVar(ValueString const & sName, ValueString const & sDefault) const;

    /// The variables of a place in the tree of tasks.
    void SetLocalVar(TaskStack const & oStack, ValueString const & sName, int iValue);
    void SetLocalVar(TaskStack const & oStack, ValueString const & sName, ValueString const & sValue);
    int GetLocalVar(TaskStack const & oStack, ValueString const & sName, int iDefault) const;
    ValueString GetLocalVar(
        TaskStack const & oStack, ValueString const & sName, ValueString const & sDefault) const;

    /// The name under which a local variable is kept: the ids from the root down, each with a dot behind
    /// it, and then its own name.
    void FormatTaskIDStack(TaskStack const & oStack, ValueString const & sName, ValueString & sKey) const;

    void ProcessContextMessage(TaskContextMessage const & oMessage);

    /// Settings are kept by task name, one for each.
    void SetSimulation(String const & sTaskName, bool bEnable, int iMode);

    /// False without a setting for the name; iMode then stays as it was.
    bool GetSimulationMode(String const & sTaskName, int & iMode) const;

private:
    friend class Task;

    struct Private;
    std::shared_ptr<Private> m;
};

} // namespace tsl
