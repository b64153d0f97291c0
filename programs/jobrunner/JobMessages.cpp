#include "JobMessages.h"

#include <array>

std::vector<JobLineMessage> JobLineMessage::Make(
    tsl::String const & sJob, char const * sStream, std::string const & sLine)
{
    constexpr std::size_t iLengthMax = tsl::String::FORMAT_LENGTH_MAX;
    std::vector<JobLineMessage> vMessages;
    std::size_t iAt = 0;
    do
    {
        std::string sShown;
        std::size_t const iBegin = iAt;
        for (; iAt < sLine.size() && sShown.size() < iLengthMax - 1; ++iAt)
            if (sLine[iAt] == '\0')
                sShown += "\\0";
            else
                sShown += sLine[iAt];

        JobLineMessage & oMessage = vMessages.emplace_back();
        oMessage.m_sJob = sJob;
        oMessage.m_sStream = sStream;
        oMessage.m_sLine = sShown.c_str();
        oMessage.m_sBytes = sLine.substr(iBegin, iAt - iBegin);
        oMessage.m_bLast = iAt == sLine.size();
    } while (iAt < sLine.size());
    return vMessages;
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
      m_sCommand(std::array{"cancel", "kill"}.at(static_cast<std::size_t>(eCommand))),
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
