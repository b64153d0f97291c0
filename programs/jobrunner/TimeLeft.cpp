#include "TimeLeft.h"

#include "JobOrder.h"

#include <algorithm>
#include <numeric>
#include <utility>

TimeLeft::TimeLeft(JobPlan const & oPlan, std::vector<std::int64_t> vTimes)
    : m_vTimes(std::move(vTimes)), m_iParallel(oPlan.iParallel)
{
    auto const iKnown =
        std::count_if(m_vTimes.begin(), m_vTimes.end(), [](std::int64_t iTime) { return iTime > 0; });
    m_bKnown = iKnown > 0;
    if (m_bKnown)
        std::replace(m_vTimes.begin(), m_vTimes.end(), std::int64_t{0},
            std::accumulate(m_vTimes.begin(), m_vTimes.end(), std::int64_t{0}) / iKnown);

    // From the last wave to the first: those that wait for a job come before it.
    m_vChains = m_vTimes;
    std::vector<int> const vWaves = GetWaves(oPlan);
    std::vector<std::size_t> vOrder(vWaves.size());
    std::iota(vOrder.begin(), vOrder.end(), std::size_t{0});
    std::stable_sort(vOrder.begin(), vOrder.end(),
        [&](std::size_t iLeft, std::size_t iRight) { return vWaves[iLeft] > vWaves[iRight]; });
    for (std::size_t const iJob : vOrder)
        for (std::size_t const iOther : oPlan.vJobs[iJob].vAfter)
            m_vChains[iOther] = std::max(m_vChains[iOther], m_vTimes[iOther] + m_vChains[iJob]);
}

std::int64_t TimeLeft::Get(std::vector<std::int64_t> const & vElapsed) const
{
    std::int64_t iSum = 0;
    std::int64_t iLongest = 0;
    for (std::size_t i = 0; i < m_vTimes.size(); ++i)
        if (vElapsed[i] != ENDED)
        {
            std::int64_t const iSpent = std::min(vElapsed[i], m_vTimes[i]);
            iSum += m_vTimes[i] - iSpent;
            iLongest = std::max(iLongest, m_vChains[i] - iSpent);
        }
    return std::max(iLongest, iSum / m_iParallel);
}
