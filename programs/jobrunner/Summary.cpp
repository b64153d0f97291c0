#include "Summary.h"

#include <algorithm>
#include <array>
#include <string>

namespace
{

using Row = std::array<std::string, 5>;

Row MakeRow(Job const & oJob, JobReport const & oReport)
{
    bool const bStarted = oReport.iAttempts > 0;
    return {oJob.sName.s_str(), GetName(oReport.eState), bStarted ? std::to_string(oReport.iAttempts) : "",
        bStarted ? FormatDuration(oReport.iDuration) : "", oReport.sReason.s_str()};
}

/// Without blanks at its end.
std::string MakeLine(Row const & vRow, std::array<std::size_t, 5> const & vWidths)
{
    std::string sLine;
    for (std::size_t i = 0; i < vRow.size(); ++i)
        sLine += vRow[i] + std::string(vWidths[i] - vRow[i].size() + 2, ' ');
    return sLine.substr(0, sLine.find_last_not_of(' ') + 1) + '\n';
}

} // namespace

std::string MakeSummary(JobPlan const & oPlan, std::vector<JobReport> const & vReports, Style const & oStyle)
{
    Row const vHead = {"Job", "State", "Attempts", "Time", "Reason"};
    std::vector<Row> vRows;
    std::array<std::size_t, 5> vWidths{};
    for (std::size_t i = 0; i < vReports.size(); ++i)
        vRows.push_back(MakeRow(oPlan.vJobs[i], vReports[i]));
    for (std::size_t i = 0; i < vHead.size(); ++i)
    {
        vWidths[i] = vHead[i].size();
        for (Row const & vRow : vRows)
            vWidths[i] = std::max(vWidths[i], vRow[i].size());
    }

    std::string sSummary = MakeLine(vHead, vWidths);
    for (std::size_t i = 0; i < vRows.size(); ++i)
    {
        // The colour takes no place, so it comes after the blanks.
        std::string const sLine = MakeLine(vRows[i], vWidths);
        std::size_t const iState = vWidths[0] + 2;
        std::size_t const iLength = vRows[i][1].size();
        sSummary += sLine.substr(0, iState) + oStyle.Paint(vReports[i].eState, sLine.substr(iState, iLength))
                    + sLine.substr(iState + iLength);
    }
    return sSummary;
}
