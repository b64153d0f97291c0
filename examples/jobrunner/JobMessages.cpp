#include "JobMessages.h"

#include <array>
#include <utility>

namespace
{

class FieldIterator : public tsl::MessageConstIterator
{
public:
    explicit FieldIterator(std::vector<MessageField> vFields)
        : MessageConstIterator(static_cast<int>(vFields.size())), m_vFields(std::move(vFields))
    {
    }

    char const * GetName() const override { return GetField().sName; }
    tsl::Value const & GetValue() const override { return GetField().oValue; }

private:
    MessageField const & GetField() const { return m_vFields.at(static_cast<std::size_t>(GetPosition())); }

    std::vector<MessageField> m_vFields;
};

} // namespace

std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> MakeFieldIterator(
    std::vector<MessageField> vFields)
{
    return std::make_unique<FieldIterator>(std::move(vFields));
}

JobLineMessage::JobLineMessage(tsl::String const & sJob, char const * sStream, tsl::String const & sLine)
    : m_sJob(sJob), m_sStream(sStream), m_sLine(sLine)
{
}

std::vector<MessageField> JobLineMessage::GetFields() const
{
    return {{"Job", m_sJob}, {"Stream", m_sStream}, {"Line", m_sLine}};
}

JobStateMessage::JobStateMessage(
    tsl::String const & sJob, JobState eState, int iAttempts, tsl::String const & sReason)
    : m_eState(eState), m_sJob(sJob), m_sState(GetName(eState)), m_iAttempts(iAttempts), m_sReason(sReason)
{
}

std::vector<MessageField> JobStateMessage::GetFields() const
{
    return {{"Job", m_sJob}, {"State", m_sState}, {"Attempts", m_iAttempts}, {"Reason", m_sReason}};
}

JobCommandMessage::JobCommandMessage(Command eCommand, tsl::String const & sReason)
    : m_eCommand(eCommand),
      m_sCommand(std::array{"start", "skip", "cancel"}.at(static_cast<std::size_t>(eCommand))),
      m_sReason(sReason)
{
}

std::vector<MessageField> JobCommandMessage::GetFields() const
{
    return {{"Command", m_sCommand}, {"Reason", m_sReason}};
}
