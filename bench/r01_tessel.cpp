// A log point that is off.

#include "EightTimes.h"

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
        tslbench::EightTimes(
            [&]
            {
                // Make the compiler treat the number as unknown and memory as changed.
                ++iNumber;
                asm volatile("" : "+r"(iNumber) : : "memory");
                PassLogPoint(iNumber);
            });
    }
    oState.SetItemsProcessed(oState.iterations() * 8);
}
BENCHMARK(LogPointOff)->Name("R01.off/tessel:Trace");
