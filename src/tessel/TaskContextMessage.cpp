#include <tessel/TaskContextMessage.h>

#include <tessel/Assertion.h>

namespace tsl
{

template<>
constexpr ClassSource CLASS_SOURCE<TaskContextMessage>{};
template ClassDescription const & Described<TaskContextMessage, Message>::GetStaticClassDesc();

TaskContextMessage * TaskContextMessage::GetClone() const
{
    return static_cast<TaskContextMessage *>(GetCopy());
}

std::unique_ptr<AbstractNamedValueConstIterator<Value>> TaskContextMessage::GetConstIterator() const
{
    return std::make_unique<TaskContextMessageConstIterator>(*this);
}

void TaskContextMessage::DoCopy(Root const & oSource)
{
    *this = static_cast<TaskContextMessage const &>(oSource);
}

static constexpr int ELEMENT_COUNT = 4;

TaskContextMessageConstIterator::TaskContextMessageConstIterator(TaskContextMessage const & oMessage)
    : MessageConstIterator(ELEMENT_COUNT),
      m_iActionId(oMessage.GetActionId()),
      m_sTaskName(oMessage.GetTaskName()),
      m_iMode(oMessage.GetMode()),
      m_iEnabled(oMessage.GetEnabled() ? 1 : 0)
{
}

Value const & TaskContextMessageConstIterator::GetValue() const
{
    switch (GetPosition())
    {
    case 0:
        return m_iActionId;
    case 1:
        return m_sTaskName;
    case 2:
        return m_iMode;
    case 3:
        return m_iEnabled;
    default:
        XAssertionFailed(
            "false", "TaskContextMessageConstIterator::GetValue(): Zugriff auf ungültiges Element.");
    }
}

char const * TaskContextMessageConstIterator::GetName() const
{
    static constexpr char const * aNames[ELEMENT_COUNT] = {"ActionId", "TaskName", "Mode", "Enabled"};
    if (IsEnd())
        XAssertionFailed(
            "false", "TaskContextMessageConstIterator::GetName(): Zugriff auf ungültiges Element.");
    return aNames[GetPosition()];
}

} // namespace tsl
