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

/// Says that tasks of a name should simulate their work, or queries that setting. TaskContext::WriteMessage
/// processes it at once; no task ever receives one.
///
///     tsl::TaskContextMessage oMessage;
///     oMessage.SetTaskName("Motor");
///     oMessage.SetEnabled(true);
///     oContext.WriteMessage(oMessage);
///
/// One thread fills a message in; after that any number may read it.
class TSL_EXPORT TaskContextMessage : public Described<TaskContextMessage, Message>
{
public:
    /// What to do. A message with any other number is ignored.
    enum
    {
        eActionSet = 0, ///< store the setting
        eActionQuery =
            1 ///< send the setting to the application in a message of this class; mode 0 if there is none
    };

    /// eActionSet, for the empty name, not enabled, mode 0.
    TaskContextMessage() = default;
    TaskContextMessage(TaskContextMessage const & oSource) = default;
    TaskContextMessage & operator=(TaskContextMessage const & oSource) = default;

    ~TaskContextMessage() override = default;

    /// One of the enumerators.
    void SetActionId(int iActionId) { m_iActionId = iActionId; }
    int GetActionId() const { return m_iActionId; }

    /// The name of the tasks for which the setting is.
    void SetTaskName(String const & sTaskName) { m_sTaskName = sTaskName; }
    String GetTaskName() const { return m_sTaskName; }

    /// How to simulate; the task gives the number its meaning.
    void SetMode(int iMode) { m_iMode = iMode; }
    int GetMode() const { return m_iMode; }

    /// Whether to simulate. False removes the setting.
    void SetEnabled(bool bEnabled) { m_bEnabled = bEnabled; }
    bool GetEnabled() const { return m_bEnabled; }

    /// A copy; the caller deletes it.
    TaskContextMessage * GetClone() const;

protected:
    /// The elements are "ActionId", "TaskName", "Mode", "Enabled".
    std::unique_ptr<AbstractNamedValueConstIterator<Value>> GetConstIterator() const override;

    void DoCopy(Root const & oSource) override;

private:
    int m_iActionId = eActionSet;
    String m_sTaskName;
    int m_iMode = 0;
    bool m_bEnabled = false;
};

template<>
TSL_EXPORT ClassDescription const & Described<TaskContextMessage, Message>::GetStaticClassDesc();

/// Iterates over copies of the elements that a TaskContextMessage has at the time of construction; "Enabled" is 1
/// or 0. One thread at a time uses it. Access outside the elements is an assertion failure.
class TSL_EXPORT TaskContextMessageConstIterator : public NamedValueIterator<TaskContextMessageConstIterator>
{
public:
    /// Is at the end.
    explicit TaskContextMessageConstIterator(TaskContextMessage const & oMessage);
    ~TaskContextMessageConstIterator() override;

    /// Name and getter of each element.
    static std::span<NamedGetter<TaskContextMessageConstIterator> const> GetRows();

private:
    ValueInt32 m_iActionId;
    ValueString m_sTaskName;
    ValueInt32 m_iMode;
    ValueInt32 m_iEnabled;
};

} // namespace tsl
