// The dump of a collection of 10,000 integers, compared with the same text built by hand.

#include <benchmark/benchmark.h>

#include <tessel/ValueAbstractValueCollection.h>
#include <tessel/ValueInt32.h>
#include <tessel/ValueString.h>

#include <cstdio>
#include <string>
#include <vector>

static constexpr int COUNT = 10'000;

namespace
{

/// A collection of integers in an array.
class Numbers : public tsl::ValueAbstractValueCollection
{
public:
    bool IsNull() const override { return false; }
    void SetNull() override { RemoveAll(); }
    unsigned int GetCount() const override { return static_cast<unsigned int>(m_vNumbers.size()); }
    void RemoveAll() override { m_vNumbers.clear(); }
    void Add(tsl::Value const & oValue) override
    {
        m_vNumbers.push_back(dynamic_cast<tsl::ValueInt32 const &>(oValue));
    }
    bool Contains(tsl::Value const &) const override { return false; }
    AbstractConstIterator<tsl::Value> * GetConstIterator() const override { return new Iterator(m_vNumbers); }

private:
    class Iterator : public AbstractConstIterator<tsl::Value>
    {
    public:
        explicit Iterator(std::vector<tsl::ValueInt32> const & vNumbers) : m_vNumbers(vNumbers) {}
        void Begin() override { m_ix = 0; }
        void End() override { m_ix = m_vNumbers.size(); }
        void Next() override { ++m_ix; }
        bool IsEnd() const override { return m_ix >= m_vNumbers.size(); }
        tsl::Value const & GetValue() const override { return m_vNumbers[m_ix]; }

    private:
        std::vector<tsl::ValueInt32> const & m_vNumbers;
        std::size_t m_ix = 0;
    };

    std::vector<tsl::ValueInt32> m_vNumbers;
};

} // namespace

static int GetNumber(int ix)
{
    return ix * 104'729 % 1'000'000;
}

static void Dump(benchmark::State & oState)
{
    Numbers oNumbers;
    for (int ix = 0; ix < COUNT; ++ix)
        oNumbers.Add(tsl::ValueInt32(GetNumber(ix)));

    for (auto _ : oState)
    {
        tsl::ValueString sText;
        oNumbers.AddAsString(sText);
        benchmark::DoNotOptimize(sText.c_str());
        benchmark::ClobberMemory();
    }
    oState.SetItemsProcessed(oState.iterations() * COUNT);
}
BENCHMARK(Dump)->Name("own.dump of 10,000 integers/tessel:ValueAbstractValueCollection");

static void PrintAndAppend(benchmark::State & oState)
{
    for (auto _ : oState)
    {
        std::string sText = "(";
        for (int ix = 0; ix < COUNT; ++ix)
        {
            char aNumber[16];
            int const iLength = std::snprintf(aNumber, sizeof aNumber, "%d", GetNumber(ix));
            if (ix > 0)
                sText += ',';
            sText.append(aNumber, static_cast<std::size_t>(iLength));
        }
        sText += ')';
        benchmark::DoNotOptimize(sText.data());
        benchmark::ClobberMemory();
    }
    oState.SetItemsProcessed(oState.iterations() * COUNT);
}
BENCHMARK(PrintAndAppend)->Name("own.dump of 10,000 integers/limit:snprintf and append");
