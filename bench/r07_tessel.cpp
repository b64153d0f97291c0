// An ini file of 1,000 chapters with 100 keys each: loading it, and lookups of random keys. Even keys have a
// number, odd ones a text.

#include <tessel/IniFile.h>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace
{

constexpr int CHAPTER_COUNT = 1000;
constexpr int KEY_COUNT = 100;
constexpr std::size_t QUESTION_COUNT = 8192;

template<class... Arguments>
std::string Print(char const * sFormat, Arguments... oArguments)
{
    char aBuffer[64];
    std::snprintf(aBuffer, sizeof aBuffer, sFormat, oArguments...);
    return aBuffer;
}

std::string GetChapter(int iChapter)
{
    return Print("chapter_%04d", iChapter);
}

std::string GetKey(int iKey)
{
    return Print("key_number_%03d", iKey);
}

std::string MakeContent()
{
    std::mt19937 oRandom(42);
    std::string sContent;
    for (int iChapter = 0; iChapter < CHAPTER_COUNT; ++iChapter)
    {
        sContent += '[' + GetChapter(iChapter) + "]\n";
        for (int iKey = 0; iKey < KEY_COUNT; ++iKey)
        {
            auto const iNumber = static_cast<unsigned int>(oRandom());
            std::string const sValue =
                iKey % 2 == 0 ? Print("%u", iNumber % 1'000'000) : Print("value text %08x", iNumber);
            sContent += GetKey(iKey) + '=' + sValue + '\n';
        }
    }
    return sContent;
}

/// The file; the destructor deletes it.
class Sample
{
public:
    Sample()
        : m_oPath(std::filesystem::temp_directory_path()
                  / Print("tessel-r07-%08x.ini", static_cast<unsigned int>(std::random_device()())))
    {
        std::ofstream(m_oPath, std::ios::binary) << MakeContent();
    }
    ~Sample() { std::filesystem::remove(m_oPath); }
    Sample(Sample const &) = delete;
    Sample & operator=(Sample const &) = delete;

    tsl::String GetName() const { return m_oPath.string(); }
    double GetSize() const { return static_cast<double>(std::filesystem::file_size(m_oPath)); }

private:
    std::filesystem::path m_oPath;
};

std::unique_ptr<tsl::IniFile> Load(tsl::String const & sName)
{
    auto pIni = std::make_unique<tsl::IniFile>();
    if (pIni->Open(sName).IsError())
        std::abort();
    return pIni;
}

tsl::IniFile const & GetLoaded()
{
    static std::unique_ptr<tsl::IniFile> const pIni = Load(Sample().GetName());
    return *pIni;
}

struct Question
{
    tsl::String sChapter;
    tsl::String sKey;
};

/// Random lookups of even (0) or odd (1) keys.
std::vector<Question> MakeQuestions(int iOdd)
{
    std::mt19937 oRandom(4711);
    auto const Draw = [&](int iCount)
    { return static_cast<int>(oRandom() % static_cast<unsigned int>(iCount)); };
    std::vector<Question> vQuestions(QUESTION_COUNT);
    for (Question & oQuestion : vQuestions)
        oQuestion = {GetChapter(Draw(CHAPTER_COUNT)), GetKey(Draw(KEY_COUNT / 2) * 2 + iOdd)};
    return vQuestions;
}

void LoadFile(benchmark::State & oState)
{
    Sample const oSample;
    for (auto _ : oState)
    {
        std::unique_ptr<tsl::IniFile> pIni = Load(oSample.GetName());
        benchmark::DoNotOptimize(pIni.get());
        oState.PauseTiming(); // giving the memory back is no part of loading
        pIni.reset();
        oState.ResumeTiming();
    }
    oState.SetItemsProcessed(oState.iterations());
    oState.counters["MB/s"] = benchmark::Counter(
        static_cast<double>(oState.iterations()) * oSample.GetSize() / 1e6, benchmark::Counter::kIsRate);
}

void AskForText(benchmark::State & oState)
{
    tsl::IniFile const & oIni = GetLoaded();
    std::vector<Question> const vQuestions = MakeQuestions(1);
    std::size_t i = 0;
    for (auto _ : oState)
    {
        Question const & oQuestion = vQuestions[i++ % QUESTION_COUNT];
        tsl::String sValue;
        if (!oIni.GetString(oQuestion.sChapter, oQuestion.sKey, sValue))
        {
            oState.SkipWithError("no text");
            break;
        }
        benchmark::DoNotOptimize(sValue.c_str());
    }
    oState.SetItemsProcessed(oState.iterations());
}

void AskForNumber(benchmark::State & oState)
{
    tsl::IniFile const & oIni = GetLoaded();
    std::vector<Question> const vQuestions = MakeQuestions(0);
    std::size_t i = 0;
    for (auto _ : oState)
    {
        Question const & oQuestion = vQuestions[i++ % QUESTION_COUNT];
        int iValue = -1;
        if (!oIni.GetInt32(oQuestion.sChapter, oQuestion.sKey, iValue))
        {
            oState.SkipWithError("no number");
            break;
        }
        benchmark::DoNotOptimize(iValue);
    }
    oState.SetItemsProcessed(oState.iterations());
}

BENCHMARK(LoadFile)->Name("R07.load 100k keys/tessel:IniFile")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(AskForText)->Name("R07.look-up -> string/tessel:IniFile");
BENCHMARK(AskForNumber)->Name("R07.look-up -> int/tessel:IniFile");

} // namespace
