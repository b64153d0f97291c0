// One search with a compiled pattern, all groups available; and the first match on 1,000,000 digits, in a child
// process so that no cache is warm.

#include <benchmark/benchmark.h>
#include <patternmatcher/PatternMatcher.h>

#include <chrono>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

char const * const pPattern = R"(^[+-]?(\d*)(\.\d+|)((d|D|e|E)[+-]?(\d+)|))";

struct Subject
{
    char const * pVariant;
    std::string sText;
    std::size_t iLength;
};

Subject const vSubjects[] = {
    {"R09.text without a number at the start/", "  short floats such as 1.5, -12.375e-3", 0},
    {"R09.text -12.375e-3/", "-12.375e-3", 10},
};

/// The matcher keeps the result; the whole match is returned as a text.
struct MatchAndSubstr
{
    tsl::PatternMatcher oMatcher{pPattern, 0};

    std::size_t Search(std::string const & sText)
    {
        return oMatcher.Match(sText, 0) > 0 ? oMatcher.substr(sText, 0).size()
                                            : tsl::PatternMatcher::Matches::npos;
    }
};

/// The caller's object gets the positions of all groups.
struct MatchIntoMatches
{
    tsl::PatternMatcher oMatcher{pPattern, 0};
    tsl::PatternMatcher::Matches oMatches;

    std::size_t Search(std::string const & sText)
    {
        return oMatcher.Match(sText, 0, oMatches) > 0 ? oMatches.GetEnd(0) - oMatches.GetBegin(0)
                                                      : tsl::PatternMatcher::Matches::npos;
    }
};

template<class Engine>
void SearchShort(benchmark::State & oState, Subject const & oSubject)
{
    Engine oEngine;
    std::size_t iLength = 0;
    for (auto _ : oState)
    {
        iLength = oEngine.Search(oSubject.sText);
        benchmark::DoNotOptimize(iLength);
    }
    if (iLength != oSubject.iLength)
        oState.SkipWithError("wrong length");
    oState.SetItemsProcessed(static_cast<std::int64_t>(oState.iterations()));
}

/// The time of the first match in seconds; negative if it has failed.
template<class Engine>
double TimeFirstSearch(std::string const & sDigits)
{
    Engine oEngine;
    auto const oBegin = std::chrono::steady_clock::now();
    std::size_t const iLength = oEngine.Search(sDigits);
    std::chrono::duration<double> const oSpent = std::chrono::steady_clock::now() - oBegin;
    return iLength == sDigits.size() ? oSpent.count() : -1;
}

template<class Engine>
void SearchDigits(benchmark::State & oState)
{
    std::string const sDigits(1'000'000, '7');
    for (auto _ : oState)
    {
        double fSeconds = -1;
        int vPipe[2];
        if (::pipe(vPipe) != 0)
            return oState.SkipWithError("no pipe");
        pid_t const iChild = ::fork();
        if (iChild == 0)
        {
            fSeconds = TimeFirstSearch<Engine>(sDigits);
            ::_exit(::write(vPipe[1], &fSeconds, sizeof fSeconds) == sizeof fSeconds ? 0 : 1);
        }
        ::close(vPipe[1]);
        bool const bAnswered = ::read(vPipe[0], &fSeconds, sizeof fSeconds) == sizeof fSeconds;
        ::close(vPipe[0]);
        ::waitpid(iChild, nullptr, 0);
        if (!bAnswered || fSeconds < 0)
            return oState.SkipWithError("the search failed");
        oState.SetIterationTime(fSeconds);
    }
    oState.SetItemsProcessed(static_cast<std::int64_t>(oState.iterations()));
}

template<class Engine>
void Register(std::string const & sName)
{
    for (Subject const & oSubject : vSubjects)
    {
        benchmark::RegisterBenchmark((oSubject.pVariant + sName).c_str(),
            [&oSubject](benchmark::State & oState) { SearchShort<Engine>(oState, oSubject); });
    }
    benchmark::RegisterBenchmark(("R09.1,000,000 digits (in a child)/" + sName).c_str(), SearchDigits<Engine>)
        ->UseManualTime()
        ->Iterations(3)
        ->Unit(benchmark::kMillisecond);
}

[[maybe_unused]] bool const bRegistered = []
{
    Register<MatchIntoMatches>("tessel:PatternMatcher into Matches");
    Register<MatchAndSubstr>("tessel:PatternMatcher Match + substr");
    return true;
}();

} // namespace
