// Prints how often the code that an argument names asks for memory: one number a line.

#include "../TestMachine.h"

#include <patternmatcher/PatternMatcher.h>
#include <tessel/Result.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <new>
#include <string>
#include <utility>

static int g_iAllocations = 0;

[[gnu::noinline]] void * operator new(std::size_t iSize)
{
    ++g_iAllocations;
    if (void * const pMemory = std::malloc(iSize))
        return pMemory;
    throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void * pMemory) noexcept
{
    std::free(pMemory);
}

[[gnu::noinline]] void operator delete(void * pMemory, std::size_t) noexcept
{
    std::free(pMemory);
}

namespace
{

/// Counts what the work asks for. Work that does not do what it should ends the program.
void Count(std::function<bool()> const & fWork)
{
    int const iBefore = g_iAllocations;
    bool const bDone = fWork();
    int const iCount = g_iAllocations - iBefore;
    if (!bDone)
        std::exit(1);
    std::printf("%d\n", iCount);
}

tsl::Result Pass(tsl::Result const & oResult)
{
    tsl::Result oCopy(oResult);
    oCopy.SetPrevious(oResult);
    oCopy.InsertFront(oResult);
    oCopy = oResult;
    oCopy = oCopy.GetWithoutHistory();
    oCopy.Clear();
    return oCopy;
}

/// A success, and then a failure with a short text.
void CountResults()
{
    bool const bNull = tsl::Result::Null().IsOk(); // made on first use
    Count([&] { return bNull && Pass(tsl::Result()) == Pass(tsl::Result::Null()); });
    Count([] { return tsl::MakeResult(2, "short text").IsError(); });
}

/// Three searches, each of which is executed in a way of its own, after a first round.
void CountMatches()
{
    tsl::PatternMatcher const oNumber(R"(^(\d+)\.(\d+))", 0);
    tsl::PatternMatcher const oWords(R"((\w+)-(\w+))", 0);
    std::string const sShort = "1.25 ab-cd";
    std::string const sLong = std::string(200'000, ' ') + "ab-cd";
    tsl::PatternMatcher::Matches oMatches;
    auto const fSearch = [&]
    {
        return oNumber.Match(sShort, 0, oMatches) == 3 && oWords.Match(sShort, 0, oMatches) == 3
               && oWords.Match(sLong, 0, oMatches) == 3;
    };
    if (fSearch())
        Count(fSearch);
}

/// Short texts in variables that are there.
void CountVariables()
{
    tsltest::OpenContext oContext(new tsltest::OneTaskMachine(nullptr));
    auto const fUse = [&](int iNumber, char const * sText)
    {
        oContext.SetVar("a number", iNumber);
        oContext.SetVar("a text", sText);
        return oContext.GetVar("a number", 0) == iNumber && oContext.GetVar("a text", "none") == sText
               && oContext.GetVar("absent", 3) == 3;
    };
    if (fUse(1, "first"))
        Count([&] { return fUse(2, "fifteen letters"); });
}

} // namespace

int main(int iCount, char ** pArguments)
{
    std::string const sArea = iCount > 1 ? pArguments[1] : "";
    std::pair<char const *, void (*)()> const aAreas[] = {
        {"results", &CountResults},
        {"matches", &CountMatches},
        {"variables", &CountVariables},
    };
    for (auto const & [sName, fCount] : aAreas)
        if (sArea == sName)
            fCount();
}
