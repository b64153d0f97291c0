#include "JsonText.h"
#include "RecordSink.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <utility>
#include <vector>

namespace
{

using Count = std::pair<std::string, std::uint64_t>;

/// Counts how often each name occurs. After a certain number of different names, further ones are counted together,
/// so that a log in which all names differ does not fill the memory.
class NameCounts
{
public:
    void Add(std::string_view sName)
    {
        if (auto const oFound = m_oCounts.find(std::string(sName)); oFound != m_oCounts.end())
            ++oFound->second;
        else if (m_oCounts.size() < NAMES_MAX && sName.size() <= LENGTH_MAX)
            m_oCounts.emplace(sName, 1);
        else
            ++m_iOthers;
    }

    /// The most frequent names first.
    std::vector<Count> GetSorted() const
    {
        std::vector<Count> vCounts(m_oCounts.begin(), m_oCounts.end());
        std::sort(vCounts.begin(), vCounts.end(),
            [](Count const & oLeft, Count const & oRight) {
                return oLeft.second != oRight.second ? oLeft.second > oRight.second
                                                     : oLeft.first < oRight.first;
            });
        if (m_iOthers > 0)
            vCounts.emplace_back("(others)", m_iOthers);
        return vCounts;
    }

private:
    static constexpr std::size_t NAMES_MAX = 10'000;
    static constexpr std::size_t LENGTH_MAX = 1'000;

    std::unordered_map<std::string, std::uint64_t> m_oCounts;
    std::uint64_t m_iOthers = 0;
};

class StatisticsSink : public RecordSink
{
public:
    StatisticsSink(Output & oOutput, Form eForm) : m_oOutput(oOutput), m_eForm(eForm) {}

    void Begin(LogRecord const & oRecord, Extent eExtent) override
    {
        ++m_aKinds[static_cast<std::size_t>(oRecord.eKind)];
        if (!oRecord.sTime.empty())
            NoteTime(oRecord);
        if (oRecord.eKind == RecordKind::eTrace)
            m_oIds.Add(oRecord.sId);
        if (oRecord.eKind == RecordKind::eFailure && eExtent == Extent::eWhole)
            NotePlace(oRecord);
    }

    void Continue(std::string_view) override {}
    void End() override {}

    void Finish() override
    {
        std::vector<Count> vKinds;
        std::uint64_t iAll = 0;
        for (RecordKind const eKind :
            {RecordKind::eFailure, RecordKind::eTrace, RecordKind::eMessage, RecordKind::eNone})
        {
            std::uint64_t const iCount = m_aKinds[static_cast<std::size_t>(eKind)];
            vKinds.emplace_back(eKind == RecordKind::eNone ? "without time" : GetKindName(eKind), iCount);
            iAll += iCount;
        }
        if (m_eForm == Form::eJson)
            WriteAsJson(iAll, vKinds);
        else
            WriteAsText(iAll, vKinds);
    }

private:
    void NoteTime(LogRecord const & oRecord)
    {
        if (m_sFirst.empty() || oRecord.iTime < m_iFirst)
        {
            m_iFirst = oRecord.iTime;
            m_sFirst = oRecord.sTime;
        }
        if (m_sLast.empty() || oRecord.iTime > m_iLast)
        {
            m_iLast = oRecord.iTime;
            m_sLast = oRecord.sTime;
        }
    }

    void NotePlace(LogRecord const & oRecord)
    {
        auto const vFailures = GetFailures(oRecord);
        if (!vFailures.empty())
            m_oPlaces.Add(
                std::string(vFailures.front().sFile) + ':' + std::to_string(vFailures.front().iLine));
    }

    void WriteAsText(std::uint64_t iAll, std::vector<Count> const & vKinds)
    {
        m_oOutput.Write(std::to_string(iAll) + " records");
        if (!m_sFirst.empty())
            m_oOutput.Write(" from " + m_sFirst + " to " + m_sLast);
        m_oOutput.Write("\n");
        WriteRows("by kind", vKinds);
        WriteRows("traces by identifier", m_oIds.GetSorted());
        WriteRows("failures by place", m_oPlaces.GetSorted());
    }

    void WriteRows(char const * sTitle, std::vector<Count> const & vCounts)
    {
        if (vCounts.empty())
            return;
        m_oOutput.Write(std::string("\n") + sTitle + '\n');
        for (auto const & [sName, iCount] : vCounts)
        {
            std::string const sCount = std::to_string(iCount);
            m_oOutput.Write(std::string(12 - std::min<std::size_t>(sCount.size(), 12), ' ') + sCount + "  "
                            + sName + '\n');
        }
    }

    void WriteAsJson(std::uint64_t iAll, std::vector<Count> const & vKinds)
    {
        m_oOutput.Write("{\"records\":" + std::to_string(iAll));
        if (!m_sFirst.empty())
            m_oOutput.Write(",\"from\":\"" + GetInternationalTime(m_sFirst) + "\",\"to\":\""
                            + GetInternationalTime(m_sLast) + '"');
        WriteObject("kinds", vKinds);
        WriteObject("ids", m_oIds.GetSorted());
        WriteObject("places", m_oPlaces.GetSorted());
        m_oOutput.Write("}\n");
    }

    void WriteObject(char const * sTitle, std::vector<Count> const & vCounts)
    {
        m_oOutput.Write(std::string(",\"") + sTitle + "\":{");
        char const * sSeparator = "";
        for (auto const & [sName, iCount] : vCounts)
        {
            m_oOutput.Write(sSeparator);
            WriteJson(m_oOutput, sName);
            m_oOutput.Write(':' + std::to_string(iCount));
            sSeparator = ",";
        }
        m_oOutput.Write("}");
    }

    Output & m_oOutput;
    Form m_eForm;
    std::array<std::uint64_t, 4> m_aKinds{};
    NameCounts m_oIds;
    NameCounts m_oPlaces;
    LogTime m_iFirst = 0;
    LogTime m_iLast = 0;
    std::string m_sFirst;
    std::string m_sLast;
};

} // namespace

std::unique_ptr<RecordSink> MakeStatisticsSink(Output & oOutput, Form eForm)
{
    return std::make_unique<StatisticsSink>(oOutput, eForm);
}
