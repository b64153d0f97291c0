#pragma once

#include "Job.h"

#include <cstdint>
#include <vector>

/// Tells from the times of earlier runs how long the jobs still need.
class TimeLeft
{
public:
    /// The times in ms, for each job of the plan; 0 if it is not known. Those count as the average of the others.
    TimeLeft(JobPlan const & oPlan, std::vector<std::int64_t> vTimes);

    /// Whether any time is known.
    bool IsKnown() const { return m_bKnown; }

    /// In ms. For each job how long it has run already, or at least its whole time if it has ended.
    std::int64_t Get(std::vector<std::int64_t> const & vElapsed) const;

    /// What counts as ended.
    static constexpr std::int64_t ENDED = INT64_MAX;

private:
    std::vector<std::int64_t> m_vTimes;
    std::vector<std::int64_t> m_vChains; ///< a job and the longest chain of those that wait for it
    std::int64_t m_iParallel;
    bool m_bKnown;
};
