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

/// Runs a state machine and owns what lasts longer than its tasks: the machine, a queue of messages in each
/// direction, the variables and the settings for simulation. The application uses the public operations; the tasks
/// use the rest through the operations of Task.
///
///     tsl::TaskContext oContext(new Clock);
///     oContext.WriteMessage(Alarm("12:00"));
///     oContext.Process();
///     std::unique_ptr<tsl::Message> const pAnswer(oContext.ReadMessage());
///
/// WriteMessage, ReadMessage and the operations on the queues may be called while the machine runs on another
/// thread. Everything else, also WriteMessage of a TaskContextMessage, may be called only on the thread that runs
/// the machine.
///
/// Access to a variable or a setting takes O(log n) for n of them.
///
/// Copies share everything, the machine included. No copy may be assigned to while a step runs.
class TSL_EXPORT TaskContext
{
public:
    /// Owns the topmost machine from now on. Null is an assertion failure.
    explicit TaskContext(TaskProcessor * pProcessor);
    TaskContext(TaskContext const & oSource);
    TaskContext & operator=(TaskContext const & oSource);
    virtual ~TaskContext();

    /// Runs one step of the machine. An exception of a task reaches the caller.
    virtual void Process();

    /// Queues a copy of the message for the machine. A TaskContextMessage is processed at once, on this thread, and
    /// not queued.
    void WriteMessage(Message const & oMessage);

    /// The next message that the machine has sent, which the caller deletes; null at once if there is none.
    Message * ReadMessage();

protected:
    /// Make the two queues; the caller deletes them. The constructor calls those of this class, not overrides.
    virtual Pipe<Message> * CreateInputQueue() const;
    virtual Pipe<Message> * CreateOutputQueue() const;

    /// The operations of Task on the queues. Receive reduces iTimeout by the time that it has waited.
    virtual void Send(Message const & oMessage);
    virtual Message * Receive(int & iTimeout);

    /// The next message, which the caller deletes, or null at once.
    virtual Message * Receive();
    virtual void ClearReveiveBuffer();
    virtual void ClearSendBuffer();

    /// Sleeps for iDuration milliseconds. Receive waits for messages with it, in slices of at most 100 ms.
    virtual void Wait(int iDuration, bool bAlertable);

    /// The first message that the filter accepts, which the caller deletes, or null. All messages before it are
    /// deleted. Only waiting at an empty queue uses up the time-out; 0 checks one message.
    Message * ReceiveFilter(MessageFilter const & oFilter, int iTimeout);

    /// The topmost machine.
    TaskProcessor & GetTaskProcessor() const;

    /// The variables of the whole machine; see Task.
    void SetVar(ValueString const & sName, int iValue);
    void SetVar(ValueString const & sName, ValueString const & sValue);
    int GetVar(ValueString const & sName, int iDefault) const;
    ValueString GetVar(ValueString const & sName, ValueString const & sDefault) const;

    /// The variables of a place in the tree of tasks; see Task.
    void SetLocalVar(TaskStack const & oStack, ValueString const & sName, int iValue);
    void SetLocalVar(TaskStack const & oStack, ValueString const & sName, ValueString const & sValue);
    int GetLocalVar(TaskStack const & oStack, ValueString const & sName, int iDefault) const;
    ValueString GetLocalVar(
        TaskStack const & oStack, ValueString const & sName, ValueString const & sDefault) const;

    /// The full name of a local variable: the ids from the topmost machine down, each followed by a dot, and its
    /// own name.
    void FormatTaskIDStack(TaskStack const & oStack, ValueString const & sName, ValueString & sKey) const;

    /// Changes a setting, or sends a reply to a query.
    void ProcessContextMessage(TaskContextMessage const & oMessage);

    /// Stores or removes the setting of a task name; there is one for each name.
    void SetSimulation(String const & sTaskName, bool bEnable, int iMode);

    /// Returns false without a setting for the name; iMode is then unchanged.
    bool GetSimulationMode(String const & sTaskName, int & iMode) const;

private:
    friend class Task;

    struct Private;
    std::shared_ptr<Private> m;
};

} // namespace tsl
