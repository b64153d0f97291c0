// A log point that is on: one line in "Logfile.txt", written to the kernel before the call returns. The level
// itself is one load, so the row measures what comes after it.

#include <benchmark/benchmark.h>

#include <tessel/Support.h>

static void LogLine(benchmark::State & oState)
{
    int iNumber = 100000 * (1 + oState.thread_index());
    for (auto _ : oState)
    {
        tsl::String sText("connection ");
        sText << ++iNumber << " closed by the far side";
        benchmark::DoNotOptimize(
            tsl::Support::DispatchDebugMessage("tessel.peer", sText, __FILE__, __LINE__));
    }
    oState.SetItemsProcessed(oState.iterations());
}
BENCHMARK(LogLine)->Name("R02.one thread/tessel:DispatchDebugMessage")->Threads(1)->UseRealTime();
BENCHMARK(LogLine)->Name("R02.two threads/tessel:DispatchDebugMessage")->Threads(2)->UseRealTime();
