#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Message.h>
#include <tessel/NamedValueIterator.h>
#include <tessel/String.h>
#include <tessel/ValueInt32.h>
#include <tessel/ValueString.h>

#include <span>

namespace tsl
{

/// Tells a machine from outside that tasks of a name should simulate, or asks for it. TaskContext acts on
/// it at once, in WriteMessage; no task ever receives one.
class TSL_EXPORT TaskContextMessage : public Described<TaskContextMessage, Message>
{
public:
    /// What to do. Any other number is ignored.
    enum
    {
        eActionSet = 0,  ///< take the setting over
        eActionQuery = 1 ///< answer with the setting by a message of this kind; mode 0 where there is none
    };

    /// To set, for the empty name, switched off.
    TaskContextMessage() = default;
    TaskContextMessage(TaskContextMessage const & oSource) = default;
    TaskContextMessage & operator=(TaskContextMessage const & oSource) = default;

    ~TaskContextMessage() override = default;

    void SetActionId(int iActionId) { m_iActionId = iActionId; }
    int GetActionId() const { return m_iActionId; }

    /// The name of the tasks that it concerns.
    void SetTaskName(String const & sTaskName) { m_sTaskName = sTaskName; }
    String GetTaskName() const { return m_sTaskName; }

    /// What simulating means is the task's own affair.
    void SetMode(int iMode) { m_iMode = iMode; }
    int GetMode() const { return m_iMode; }

    void SetEnabled(bool bEnabled) { m_bEnabled = bEnabled; }
    bool GetEnabled() const { return m_bEnabled; }

    /// A copy; the caller deletes it.
    TaskContextMessage * GetClone() const;

protected:
    /// "ActionId", "TaskName", "Mode", "Enabled".
    std::unique_ptr<AbstractNamedValueConstIterator<Value>> GetConstIterator() const override;

    void DoCopy(Root const & oSource) override;

private:
    int m_iActionId = eActionSet;
    String m_sTaskName;
    int m_iMode = 0;
    bool m_bEnabled = false;
};

extern template ClassDescription const & Described<TaskContextMessage, Message>::GetStaticClassDesc();

/// The walk over the contents of a TaskContextMessage as they are when it begins; "Enabled" is 1 or 0.
/// Access outside the elements is an assertion failure.
class TSL_EXPORT TaskContextMessageConstIterator : public NamedValueIterator<TaskContextMessageConstIterator>
{
public:
    explicit TaskContextMessageConstIterator(TaskContextMessage const & oMessage);
    ~TaskContextMessageConstIterator() override;

    static std::span<NamedGetter<TaskContextMessageConstIterator> const> GetRows();

private:
    ValueInt32 m_iActionId;
    ValueString m_sTaskName;
    ValueInt32 m_iMode;
    ValueInt32 m_iEnabled;
};

} // namespace tsl
