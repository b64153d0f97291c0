#include "Job.h"

#include <array>

char const * GetName(JobState eState)
{
    static constexpr std::array<char const *, 8> vNames = {
        "waiting", "starting", "running", "stopping", "retrying", "done", "failed", "skipped"};
    return vNames.at(static_cast<std::size_t>(eState));
}

bool IsEnd(JobState eState)
{
    return eState >= JobState::eDone;
}
