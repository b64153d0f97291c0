#include "growth.h"

#include "../programs/jobrunner/JobFile.h"
#include "../programs/jobrunner/JobOrder.h"
#include "growth_file.h"

#include <sstream>

using namespace tsl;

namespace
{

/// Reads a plan in which each job waits for the next one in the file, and writes its order.
std::function<void()> Plan(int n)
{
    auto const fGetName = [](int i) { return std::to_string(1'000'000 + i); };
    std::string sContent;
    for (int i = 0; i < n; ++i)
        sContent += "[Job/" + fGetName(i) + "]\nCommand=true\n"
                    + (i + 1 < n ? "After=" + fGetName(i + 1) + '\n' : "");

    auto const pFile = std::make_shared<growth::TemporaryFile>(sContent);
    return [n, pFile, sFirst = "1  " + fGetName(n - 1)]
    {
        JobPlan oPlan;
        growth::Require(ReadJobPlan(pFile->GetName(), oPlan).IsOk());
        std::ostringstream oOrder;
        WriteOrder(oPlan, oOrder);
        growth::Require(std::ssize(oPlan.vJobs) == n && oOrder.str().rfind(sFirst, 0) == 0);
    };
}

} // namespace

std::vector<growth::Work> growth::GetJobWorks()
{
    return {{"plan of n jobs of the job runner", Order::eLinearLog, 100, &Plan}};
}
