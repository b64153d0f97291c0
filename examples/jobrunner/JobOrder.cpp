#include "JobOrder.h"

#include <algorithm>
#include <ostream>

namespace
{

/// The wave of a job whose prerequisites have theirs, else 0.
int GetWave(Job const & oJob, std::vector<int> const & vWaves)
{
    int iWave = 1;
    for (std::size_t const iOther : oJob.vAfter)
    {
        if (vWaves[iOther] == 0)
            return 0;
        iWave = std::max(iWave, vWaves[iOther] + 1);
    }
    return iWave;
}

} // namespace

std::vector<int> GetWaves(JobPlan const & oPlan)
{
    std::vector<int> vWaves(oPlan.vJobs.size(), 0);
    for (bool bChanged = true; bChanged;)
    {
        bChanged = false;
        for (std::size_t i = 0; i < vWaves.size(); ++i)
            if (vWaves[i] == 0)
            {
                vWaves[i] = GetWave(oPlan.vJobs[i], vWaves);
                bChanged = bChanged || vWaves[i] != 0;
            }
    }
    return vWaves;
}

std::vector<std::size_t> FindCycle(JobPlan const & oPlan)
{
    std::vector<int> const vWaves = GetWaves(oPlan);
    auto const pStart = std::find(vWaves.begin(), vWaves.end(), 0);
    if (pStart == vWaves.end())
        return {};

    // Each job without a wave waits for another one without: whoever walks on along these comes back.
    std::vector<std::size_t> vPath = {static_cast<std::size_t>(pStart - vWaves.begin())};
    for (;;)
    {
        std::vector<std::size_t> const & vAfter = oPlan.vJobs[vPath.back()].vAfter;
        std::size_t const iNext =
            *std::find_if(vAfter.begin(), vAfter.end(), [&](std::size_t i) { return vWaves[i] == 0; });
        auto const pSeen = std::find(vPath.begin(), vPath.end(), iNext);
        bool const bClosed = pSeen != vPath.end();
        if (bClosed)
            vPath.erase(vPath.begin(), pSeen);
        vPath.push_back(iNext);
        if (bClosed)
            return vPath;
    }
}

void WriteOrder(JobPlan const & oPlan, std::ostream & oStream)
{
    std::vector<int> const vWaves = GetWaves(oPlan);
    int const iLast = vWaves.empty() ? 0 : *std::max_element(vWaves.begin(), vWaves.end());
    for (int iWave = 1; iWave <= iLast; ++iWave)
        for (std::size_t i = 0; i < vWaves.size(); ++i)
            if (vWaves[i] == iWave)
                oStream << iWave << "  " << oPlan.vJobs[i].sName.s_str() << ": "
                        << oPlan.vJobs[i].sCommand.s_str() << '\n';
}

void WriteGraph(JobPlan const & oPlan, std::ostream & oStream)
{
    oStream << "digraph jobs {\n";
    for (Job const & oJob : oPlan.vJobs)
    {
        oStream << "    \"" << oJob.sName.s_str() << "\";\n";
        for (std::size_t const iOther : oJob.vAfter)
            oStream << "    \"" << oPlan.vJobs[iOther].sName.s_str() << "\" -> \"" << oJob.sName.s_str()
                    << "\";\n";
    }
    oStream << "}\n";
}
