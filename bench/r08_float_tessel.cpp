// A float to text through a layout, and back.

#include <benchmark/benchmark.h>

#include <tessel/ValueFloat32.h>
#include <tessel/ValueFloatConverter.h>

#include <cstdio>
#include <random>
#include <vector>

static constexpr std::size_t COUNT = 1024;

/// Numbers with 1 to 6 digits before the point, one in four negative.
static std::vector<float> MakeNumbers()
{
    std::mt19937 oRandom(7);
    std::vector<float> vNumbers;
    for (std::size_t i = 0; i < COUNT; ++i)
    {
        unsigned int iLimit = 10;
        for (auto iDigits = oRandom() % 9; iDigits > 0; --iDigits)
            iLimit *= 10;
        int const iNumber = static_cast<int>(oRandom() % iLimit);
        vNumbers.push_back(static_cast<float>((i % 4 == 0 ? -iNumber : iNumber) / 1000.0 + 0.0004));
    }
    return vNumbers;
}

static void Write(benchmark::State & oState)
{
    std::vector<float> const vNumbers = MakeNumbers();
    tsl::ValueFloatConverterLayout const oLayout("${%.3f}");
    std::size_t i = 0;
    for (auto _ : oState)
    {
        tsl::ValueFloat32 const oNumber(vNumbers[i++ % COUNT]);
        tsl::ValueString sText;
        oNumber.GetConverter().ConvertToText(oNumber, sText, oLayout);
        benchmark::DoNotOptimize(sText.c_str());
        benchmark::ClobberMemory();
    }
    oState.SetItemsProcessed(oState.iterations());
}
BENCHMARK(Write)->Name("R08.double -> text %.3f/tessel:ValueFloat32 through ${%.3f}");

static void Read(benchmark::State & oState)
{
    std::vector<tsl::ValueString> vTexts;
    for (float const fNumber : MakeNumbers())
    {
        char aText[64];
        std::snprintf(aText, sizeof aText, "%.3f", static_cast<double>(fNumber));
        vTexts.emplace_back(aText);
    }

    std::size_t i = 0;
    for (auto _ : oState)
    {
        tsl::ValueFloat32 oNumber;
        tsl::Result const oResult = oNumber.GetConverter().ConvertFromText(vTexts[i++ % COUNT], oNumber);
        benchmark::DoNotOptimize(oResult.IsOk());
        benchmark::DoNotOptimize(oNumber.AsFloat32());
    }
    oState.SetItemsProcessed(oState.iterations());
}
BENCHMARK(Read)->Name("R08.text -> double strict/tessel:ValueFloat32 through ${%f}");
