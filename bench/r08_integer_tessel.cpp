// A number to text through a layout, and back.

#include <benchmark/benchmark.h>

#include <tessel/ValueInt32.h>
#include <tessel/ValueIntegerConverter.h>

#include <random>
#include <string>
#include <vector>

static constexpr std::size_t COUNT = 1024;

/// Numbers of 1 to 9 digits, one in four negative.
static std::vector<int> MakeNumbers()
{
    std::mt19937 oRandom(7);
    std::vector<int> vNumbers;
    for (std::size_t i = 0; i < COUNT; ++i)
    {
        unsigned int iLimit = 10;
        for (auto iDigits = oRandom() % 9; iDigits > 0; --iDigits)
            iLimit *= 10;
        int const iNumber = static_cast<int>(oRandom() % iLimit);
        vNumbers.push_back(i % 4 == 0 ? -iNumber : iNumber);
    }
    return vNumbers;
}

static void Write(benchmark::State & oState)
{
    std::vector<int> const vNumbers = MakeNumbers();
    tsl::ValueIntegerConverterLayout const oLayout("[${%d}]");
    std::size_t i = 0;
    for (auto _ : oState)
    {
        tsl::ValueInt32 const oNumber(vNumbers[i++ % COUNT]);
        tsl::ValueString sText;
        oNumber.GetConverter().ConvertToText(oNumber, sText, oLayout);
        benchmark::DoNotOptimize(sText.c_str());
        benchmark::ClobberMemory();
    }
    oState.SetItemsProcessed(oState.iterations());
}
BENCHMARK(Write)->Name("R08.int -> text \"[n]\"/tessel:ValueInt32 through [${%d}]");

static void Read(benchmark::State & oState)
{
    std::vector<tsl::ValueString> vTexts;
    for (int const iNumber : MakeNumbers())
        vTexts.emplace_back(std::to_string(iNumber));

    std::size_t i = 0;
    for (auto _ : oState)
    {
        tsl::ValueInt32 oNumber;
        tsl::Result const oResult = oNumber.GetConverter().ConvertFromText(vTexts[i++ % COUNT], oNumber);
        benchmark::DoNotOptimize(oResult.IsOk());
        benchmark::DoNotOptimize(oNumber.AsInt32());
    }
    oState.SetItemsProcessed(oState.iterations());
}
BENCHMARK(Read)->Name("R08.text -> int strict/tessel:ValueInt32 through ${%d}");
