// Start and end of a program that is linked with the library and does nothing. There is no ini file; the log file
// is opened in the current directory as always.

#include "ChildProgram.h"

#include <benchmark/benchmark.h>

#include <string>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

static bool RunOnce(std::string & sProgram)
{
    char * aArguments[] = {sProgram.data(), nullptr};
    pid_t iChild = 0;
    if (::posix_spawn(&iChild, sProgram.c_str(), nullptr, nullptr, aArguments, environ) != 0)
        return false;

    int iStatus = 0;
    return ::waitpid(iChild, &iStatus, 0) == iChild && iStatus == 0;
}

static void StartProcess(benchmark::State & oState)
{
    std::string sProgram = tslbench::FindChild("start_tessel");
    for (auto _ : oState)
    {
        if (!RunOnce(sProgram))
        {
            oState.SkipWithError("start_tessel cannot be started or has failed");
            break;
        }
    }
    oState.SetItemsProcessed(oState.iterations());
}
BENCHMARK(StartProcess)
    ->Name("R11.process start/tessel:linked, no ini file")
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
