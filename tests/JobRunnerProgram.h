#pragma once

#include "TestChild.h"
#include "TestPrelude.h"

namespace tsltest
{

/// The runner in a folder of its own, with jobs whose command "%" stands for the test's own program.
class JobRunner : public TestProgram
{
public:
    explicit JobRunner(std::string const & sJobs) : TestProgram(TESSEL_PROGRAMS "/jobrunner")
    {
        std::string sIni = "[Runner]\nParallel=3\nRetryPause=1\n" + sJobs;
        for (std::size_t i = 0; (i = sIni.find('%', i)) != std::string::npos; i += CHILD.size())
            sIni.replace(i, 1, CHILD);
        WriteFile("jobrunner.ini", sIni);
    }
};

} // namespace tsltest
