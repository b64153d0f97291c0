#include "JobMessages.h"

#include <array>

JobLineMessage::JobLineMessage(tsl::String const & sJob, char const * sStream, tsl::String const & sLine)
    : m_sJob(sJob), m_sStream(sStream), m_sLine(sLine)
{
}

JobLineMessage::Rows JobLineMessage::GetRows()
{
    static constexpr tsl::NamedGetter<JobLineMessage> aRows[] = {
        {"Job", tsl::GetMember<&JobLineMessage::m_sJob>},
        {"Stream", tsl::GetMember<&JobLineMessage::m_sStream>},
        {"Line", tsl::GetMember<&JobLineMessage::m_sLine>},
    };
    return aRows;
}

JobStateMessage::JobStateMessage(
    tsl::String const & sJob, JobState eState, int iAttempts, tsl::String const & sReason)
    : m_eState(eState), m_sJob(sJob), m_sState(GetName(eState)), m_iAttempts(iAttempts), m_sReason(sReason)
{
}

JobStateMessage::Rows JobStateMessage::GetRows()
{
    static constexpr tsl::NamedGetter<JobStateMessage> aRows[] = {
        {"Job", tsl::GetMember<&JobStateMessage::m_sJob>},
        {"State", tsl::GetMember<&JobStateMessage::m_sState>},
        {"Attempts", tsl::GetMember<&JobStateMessage::m_iAttempts>},
        {"Reason", tsl::GetMember<&JobStateMessage::m_sReason>},
    };
    return aRows;
}

JobCommandMessage::JobCommandMessage(Command eCommand, tsl::String const & sReason)
    : m_eCommand(eCommand),
      m_sCommand(std::array{"start", "skip", "cancel"}.at(static_cast<std::size_t>(eCommand))),
      m_sReason(sReason)
{
}

JobCommandMessage::Rows JobCommandMessage::GetRows()
{
    static constexpr tsl::NamedGetter<JobCommandMessage> aRows[] = {
        {"Command", tsl::GetMember<&JobCommandMessage::m_sCommand>},
        {"Reason", tsl::GetMember<&JobCommandMessage::m_sReason>},
    };
    return aRows;
}
