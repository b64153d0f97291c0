#include "JobOrder.h"

#include "../shared/NearestName.h"

#include <algorithm>
#include <ostream>
#include <utility>

bool FindJob(JobPlan const & oPlan, tsl::String const & sName, std::size_t & iJob)
{
    auto const pJob = std::lower_bound(oPlan.vJobs.begin(), oPlan.vJobs.end(), sName,
        [](Job const & oJob, tsl::String const & s) { return oJob.sName.s_str() < s.s_str(); });
    iJob = static_cast<std::size_t>(pJob - oPlan.vJobs.begin());
    return pJob != oPlan.vJobs.end() && pJob->sName == sName;
}

std::string AskForJob(JobPlan const & oPlan, tsl::String const & sName)
{
    std::vector<std::string> vNames;
    for (Job const & oJob : oPlan.vJobs)
        vNames.push_back(oJob.sName.s_str());
    return AskForNearest(sName.s_str(), vNames);
}

std::vector<bool> FindNeeded(JobPlan const & oPlan, std::vector<std::size_t> vJobs)
{
    std::vector<bool> vNeeded(oPlan.vJobs.size());
    while (!vJobs.empty())
    {
        std::size_t const iJob = vJobs.back();
        vJobs.pop_back();
        if (vNeeded[iJob])
            continue;
        vNeeded[iJob] = true;
        vJobs.insert(vJobs.end(), oPlan.vJobs[iJob].vAfter.begin(), oPlan.vJobs[iJob].vAfter.end());
    }
    return vNeeded;
}

void KeepJobs(JobPlan & oPlan, std::vector<bool> const & vKeep)
{
    std::vector<std::size_t> vNewIndexes(vKeep.size());
    std::vector<Job> vKept;
    for (std::size_t i = 0; i < vKeep.size(); ++i)
    {
        vNewIndexes[i] = vKept.size();
        if (vKeep[i])
            vKept.push_back(std::move(oPlan.vJobs[i]));
    }
    for (Job & oJob : vKept)
    {
        std::erase_if(oJob.vAfter, [&](std::size_t i) { return !vKeep[i]; });
        for (std::size_t & iOther : oJob.vAfter)
            iOther = vNewIndexes[iOther];
    }
    oPlan.vJobs = std::move(vKept);
}

std::vector<int> GetWaves(JobPlan const & oPlan)
{
    std::size_t const iCount = oPlan.vJobs.size();
    std::vector<std::size_t> vOpen(iCount);                   // prerequisites without a wave
    std::vector<std::vector<std::size_t>> vFollowers(iCount); // the jobs that wait for it
    std::vector<std::size_t> vReady;                          // jobs with a wave, in its order
    std::vector<int> vWaves(iCount, 0);
    for (std::size_t i = 0; i < iCount; ++i)
    {
        for (std::size_t const iOther : oPlan.vJobs[i].vAfter)
            vFollowers[iOther].push_back(i);
        vOpen[i] = oPlan.vJobs[i].vAfter.size();
        if (vOpen[i] == 0)
        {
            vWaves[i] = 1;
            vReady.push_back(i);
        }
    }

    for (std::size_t iNext = 0; iNext < vReady.size(); ++iNext)
    {
        std::size_t const iJob = vReady[iNext];
        for (std::size_t const iFollower : vFollowers[iJob])
            if (--vOpen[iFollower] == 0)
            {
                // The last of those that it waits for, so the one with the latest wave.
                vWaves[iFollower] = vWaves[iJob] + 1;
                vReady.push_back(iFollower);
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

    // Each job without a wave waits for another one without a wave, so following them leads into a cycle.
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

void WriteNames(JobPlan const & oPlan, std::ostream & oStream)
{
    for (Job const & oJob : oPlan.vJobs)
        oStream << oJob.sName.s_str() << '\n';
}

void WriteOrder(JobPlan const & oPlan, std::ostream & oStream)
{
    std::vector<int> const vWaves = GetWaves(oPlan);
    std::vector<std::size_t> vOrder;
    for (std::size_t i = 0; i < vWaves.size(); ++i)
        if (vWaves[i] != 0)
            vOrder.push_back(i);
    std::stable_sort(vOrder.begin(), vOrder.end(),
        [&](std::size_t iLeft, std::size_t iRight) { return vWaves[iLeft] < vWaves[iRight]; });

    for (std::size_t const i : vOrder)
        oStream << vWaves[i] << "  " << oPlan.vJobs[i].sName.s_str() << ": "
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

void WriteMermaid(JobPlan const & oPlan, std::ostream & oStream)
{
    // Names may have slashes, which nodes may not.
    oStream << "flowchart LR\n";
    for (std::size_t i = 0; i < oPlan.vJobs.size(); ++i)
        oStream << "    j" << i << "[\"" << oPlan.vJobs[i].sName.s_str() << "\"]\n";
    for (std::size_t i = 0; i < oPlan.vJobs.size(); ++i)
        for (std::size_t const iOther : oPlan.vJobs[i].vAfter)
            oStream << "    j" << iOther << " --> j" << i << '\n';
}
