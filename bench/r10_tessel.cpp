// Child processes: start and end of a trivial one, without redirection and with reader threads; reading 200,000
// lines of 60 bytes.

#include "ChildProgram.h"

#include <tessel/CmdLine.h>
#include <tessel/OS.h>

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

using namespace tsl;

static constexpr int WITH_READERS = CmdLine::eModeRedirect | CmdLine::eModeReaderThreads;
static constexpr long LINES = 200'000;
static constexpr unsigned int READ_SIZE = 65536; // bytes, as much as a pipe holds

static std::string GetLinesCommand()
{
    return tslbench::FindChild("emit_lines") + ' ' + std::to_string(LINES) + " 60";
}

static bool Start(CmdLine & oChild, int iMode, std::string const & sCommand)
{
    oChild.SetMode(iMode);
    oChild.SetCommand(sCommand);
    int iProcessId = 0;
    return oChild.Run(iProcessId).IsOk();
}

static void StartProcess(benchmark::State & oState, int iMode)
{
    for (auto _ : oState)
    {
        CmdLine oChild;
        if (!Start(oChild, iMode, "/bin/true") || oChild.WaitTermination() != CmdLine::eWaitTerminated
            || oChild.GetExitCode() != 0)
        {
            oState.SkipWithError("the child has failed");
            break;
        }
    }
    oState.SetItemsProcessed(oState.iterations());
}
BENCHMARK_CAPTURE(StartProcess, plain, 0)
    ->Name("R10.start /bin/true and wait/tessel:CmdLine")
    ->UseRealTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(StartProcess, readers, WITH_READERS)
    ->Name("R10.start /bin/true and wait/tessel:CmdLine, redirected, reader threads")
    ->UseRealTime()
    ->Unit(benchmark::kMicrosecond);

static long TakeLines(CmdLine & oChild)
{
    long iCount = 0;
    while (std::unique_ptr<String> const pLine{oChild.ReceiveStdOut()})
        ++iCount;
    return iCount;
}

static void ReadLines(benchmark::State & oState, bool bMeanwhile)
{
    std::string const sCommand = GetLinesCommand();
    for (auto _ : oState)
    {
        CmdLine oChild;
        oChild.SetBufferSize(READ_SIZE);
        bool const bStarted = Start(oChild, WITH_READERS, sCommand);
        long iCount = 0;
        while (oChild.IsRunning())
        {
            if (bMeanwhile)
                iCount += TakeLines(oChild);
            OS::Sleep(1);
        }
        iCount += TakeLines(oChild);
        if (!bStarted || iCount != LINES)
        {
            oState.SkipWithError(("lines: " + std::to_string(iCount)).c_str());
            break;
        }
    }
    oState.SetItemsProcessed(oState.iterations() * LINES);
}
BENCHMARK_CAPTURE(ReadLines, meanwhile, true)
    ->Name("R10.read lines of a child into a queue/tessel:CmdLine, reader threads")
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ReadLines, afterwards, false)
    ->Name("R10.read lines of a child, queue emptied afterwards/tessel:CmdLine, reader threads")
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
