// A call in another translation unit that can fail: success and failure, created, tested and destroyed.

#include "EightTimes.h"
#include "r03_work_tessel.h"

#include <benchmark/benchmark.h>

static constexpr int SUCCEED = 0;
static constexpr int FAIL = -1;

template<tsl::Result (*fCall)(int), int iArgument>
static void CallFallible(benchmark::State & oState)
{
    int iUnknown = iArgument;
    int iFailures = 0;
    for (auto _ : oState)
    {
        tslbench::EightTimes(
            [&]
            {
                // Make the compiler treat the argument as unknown.
                asm volatile("" : "+r"(iUnknown) : : "memory");
                tsl::Result const oResult = fCall(iUnknown);
                iFailures += oResult.IsError() ? 1 : 0;
            });
    }
    benchmark::DoNotOptimize(iFailures);
    oState.SetItemsProcessed(oState.iterations() * 8);
}
BENCHMARK_TEMPLATE(CallFallible, &tslbench::Fallible, SUCCEED)->Name("R03.success/tessel:Result");
BENCHMARK_TEMPLATE(CallFallible, &tslbench::Fallible, FAIL)->Name("R03.failure/tessel:Result");
BENCHMARK_TEMPLATE(CallFallible, &tslbench::FallibleThreeDeep, SUCCEED)
    ->Name("R03.success, 3 levels passed on/tessel:Result");
BENCHMARK_TEMPLATE(CallFallible, &tslbench::FallibleThreeDeep, FAIL)
    ->Name("R03.failure, 3 levels passed on/tessel:Result");
