#include <tessel/TaskContextMessage.h>

namespace tsl
{

template<>
constexpr ClassSource CLASS_SOURCE<TaskContextMessage>{};
template<>
ClassDescription const & Described<TaskContextMessage, Message>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

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

TaskContextMessageConstIterator::TaskContextMessageConstIterator(TaskContextMessage const & oMessage)
    : NamedValueIterator(GetRows().size()),
      m_iActionId(oMessage.GetActionId()),
      m_sTaskName(oMessage.GetTaskName()),
      m_iMode(oMessage.GetMode()),
      m_iEnabled(oMessage.GetEnabled() ? 1 : 0)
{
}

// Out of line, so that the vtable and the type record of the class are only in the library.
TaskContextMessageConstIterator::~TaskContextMessageConstIterator() = default;

std::span<NamedGetter<TaskContextMessageConstIterator> const> TaskContextMessageConstIterator::GetRows()
{
    static constexpr NamedGetter<TaskContextMessageConstIterator> aRows[] = {
        {"ActionId", GetMember<&TaskContextMessageConstIterator::m_iActionId>},
        {"TaskName", GetMember<&TaskContextMessageConstIterator::m_sTaskName>},
        {"Mode", GetMember<&TaskContextMessageConstIterator::m_iMode>},
        {"Enabled", GetMember<&TaskContextMessageConstIterator::m_iEnabled>},
    };
    return aRows;
}

} // namespace tsl
