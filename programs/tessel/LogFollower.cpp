#include "LogFollower.h"

namespace
{

constexpr std::chrono::milliseconds INTERVAL(100);

/// A followed log, with the time when something was last read from it.
class Followed
{
public:
    explicit Followed(LogReader & oReader) : m_oReader(oReader) {}

    /// Tries to open a log that did not exist before, or reads what was appended. bNews is set if there was
    /// anything.
    [[nodiscard]] tsl::Result ReadNews(bool & bNews)
    {
        if (!m_oReader.IsOpen())
        {
            bNews = m_oReader.Open().IsOk();
            return tsl::Result();
        }

        // Check before reading: what was appended before the replacement must still be read.
        LogReader::Change const eChange = m_oReader.GetChange();
        if (eChange != LogReader::Change::eOverwritten)
        {
            bool bEnd = false;
            tsl::Result oResult = m_oReader.Read(bEnd);
            bNews = !bEnd;
            if (oResult.IsError() || bNews)
            {
                m_oLastNews = Clock::now();
                return oResult;
            }
        }

        if (eChange != LogReader::Change::eNone)
        {
            m_oReader.EndRecord();
            bNews = m_oReader.Open().IsOk();
        }
        else if (m_oReader.IsLineComplete() && Clock::now() - m_oLastNews >= INTERVAL)
            m_oReader.EndRecord();
        return tsl::Result();
    }

private:
    using Clock = std::chrono::steady_clock;

    LogReader & m_oReader;
    Clock::time_point m_oLastNews;
};

} // namespace

tsl::Result FollowLogs(
    std::vector<std::unique_ptr<LogReader>> const & vReaders, Output & oOutput, ReportFailure const & fReport)
{
    std::vector<Followed> vFollowed;
    for (auto const & pReader : vReaders)
    {
        if (tsl::Result const oResult = pReader->Open(); oResult.IsError())
            fReport(tsl::MakeResult(oResult.GetErrorCode(), "Waiting for a log", oResult));
        vFollowed.emplace_back(*pReader);
    }

    bool bAnyNews = true;
    while (!oOutput.IsFailed())
    {
        if (!bAnyNews && !System::WaitWithOutput(INTERVAL))
            break;
        bAnyNews = false;
        for (Followed & oFollowed : vFollowed)
        {
            bool bNews = false;
            if (tsl::Result oResult = oFollowed.ReadNews(bNews); oResult.IsError())
                return oResult;
            bAnyNews = bAnyNews || bNews;
        }
        oOutput.Flush();
    }
    return tsl::Result();
}
