#include "Summary.h"

#include <algorithm>
#include <array>
#include <ostream>
#include <string>

namespace
{

using Row = std::array<std::string, 5>;

std::string FormatDuration(long iDuration)
{
    tsl::String sText;
    sText.Format("%.3f s", static_cast<double>(iDuration) / 1000.0);
    return sText.s_str();
}

Row MakeRow(Job const & oJob, JobReport const & oReport)
{
    bool const bStarted = oReport.iAttempts > 0;
    return {oJob.sName.s_str(), GetName(oReport.eState), bStarted ? std::to_string(oReport.iAttempts) : "",
        bStarted ? FormatDuration(oReport.iDuration) : "", oReport.sReason.s_str()};
}

void WriteRow(Row const & vRow, std::array<std::size_t, 5> const & vWidths, std::ostream & oStream)
{
    std::string sLine;
    for (std::size_t i = 0; i < vRow.size(); ++i)
        sLine += vRow[i] + std::string(vWidths[i] - vRow[i].size() + 2, ' ');
    oStream << sLine.substr(0, sLine.find_last_not_of(' ') + 1) << '\n';
}

} // namespace

void WriteSummary(JobPlan const & oPlan, std::vector<JobReport> const & vReports, std::ostream & oStream)
{
    std::vector<Row> vRows = {{"Job", "State", "Attempts", "Time", "Reason"}};
    for (std::size_t i = 0; i < vReports.size(); ++i)
        vRows.push_back(MakeRow(oPlan.vJobs[i], vReports[i]));

    std::array<std::size_t, 5> vWidths{};
    for (Row const & vRow : vRows)
        for (std::size_t i = 0; i < vRow.size(); ++i)
            vWidths[i] = std::max(vWidths[i], vRow[i].size());
    for (Row const & vRow : vRows)
        WriteRow(vRow, vWidths, oStream);
    oStream.flush();
}
