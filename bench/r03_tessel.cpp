// A fallible call in another translation unit: success and failure, made, tested and released.

#include "r03_work_tessel.h"

#include <benchmark/benchmark.h>

static constexpr int SUCCEED = 0;
static constexpr int FAIL = -1;

static void CallFallible(benchmark::State & oState, tsl::Result (*fCall)(int), int iArgument)
{
    int iFailures = 0;
    for (auto _ : oState)
    {
        for (int i = 0; i < 8; ++i)
        {
            asm volatile("" : "+r"(iArgument) : : "memory");
            tsl::Result const oResult = fCall(iArgument);
            iFailures += oResult.IsError() ? 1 : 0;
        }
    }
    benchmark::DoNotOptimize(iFailures);
    oState.SetItemsProcessed(oState.iterations() * 8);
}
BENCHMARK_CAPTURE(CallFallible, success, &tslbench::Fallible, SUCCEED)->Name("R03.success/tessel:Result");
BENCHMARK_CAPTURE(CallFallible, failure, &tslbench::Fallible, FAIL)->Name("R03.failure/tessel:Result");
BENCHMARK_CAPTURE(CallFallible, successDeep, &tslbench::FallibleThreeDeep, SUCCEED)
    ->Name("R03.success, 3 levels passed on/tessel:Result");
BENCHMARK_CAPTURE(CallFallible, failureDeep, &tslbench::FallibleThreeDeep, FAIL)
    ->Name("R03.failure, 3 levels passed on/tessel:Result");
