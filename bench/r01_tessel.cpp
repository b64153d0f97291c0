// A log point that is off: what it costs to pass it.

#include <benchmark/benchmark.h>

#include <tessel/LogPoint.h>

static void PassLogPoint(int iNumber)
{
    tsl::Trace("Bench", [&] { return tsl::String("value ") + iNumber; });
}

static void LogPointOff(benchmark::State & oState)
{
    int iNumber = 0;
    for (auto _ : oState)
    {
        // Eight a turn, so that the loop itself does not hide what a single one costs. The compiler must
        // take the number as unknown and memory as changed.
        for (int i = 0; i < 8; ++i)
        {
            ++iNumber;
            asm volatile("" : "+r"(iNumber) : : "memory");
            PassLogPoint(iNumber);
        }
    }
    oState.SetItemsProcessed(oState.iterations() * 8);
}
BENCHMARK(LogPointOff)->Name("R01.off/tessel:Trace");
