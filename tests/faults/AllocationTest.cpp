#include "Memory.h"

#include "../TestMachine.h"

#include <patternmatcher/PatternMatcher.h>

#include <gtest/gtest.h>

using namespace tsl;
using namespace tsltest;

namespace
{

/// How often the work allocates, which has to succeed.
template<class Work>
long Count(Work const & fWork)
{
    long const iBefore = tslfaults::CountAllocations();
    bool const bDone = fWork();
    long const iCount = tslfaults::CountAllocations() - iBefore;
    EXPECT_TRUE(bDone);
    return iCount;
}

Result Pass(Result const & oResult)
{
    Result oCopy(oResult);
    oCopy.SetPrevious(oResult);
    oCopy.InsertFront(oResult);
    oCopy = oResult;
    oCopy = oCopy.GetWithoutHistory();
    oCopy.Clear();
    return oCopy;
}

} // namespace

TEST(Allocations, AreNoneForASuccessAndOneForAShortFailure)
{
    EXPECT_TRUE(Result::Null().IsOk()); // made on first use
    EXPECT_EQ(Count([] { return Pass(Result()) == Pass(Result::Null()); }), 0);
    EXPECT_EQ(Count([] { return MakeResult(2, "short text").IsError(); }), 1);
}

TEST(Allocations, AreNoneForASearchLikeAFormerOne)
{
    // Each of the three is executed in a way of its own.
    PatternMatcher const oNumber(R"(^(\d+)\.(\d+))", 0);
    PatternMatcher const oWords(R"((\w+)-(\w+))", 0);
    std::string const sShort = "1.25 ab-cd";
    std::string const sLong = std::string(200'000, ' ') + "ab-cd";
    PatternMatcher::Matches oMatches;
    auto const fSearch = [&]
    {
        return oNumber.Match(sShort, 0, oMatches) == 3 && oWords.Match(sShort, 0, oMatches) == 3
               && oWords.Match(sLong, 0, oMatches) == 3;
    };
    EXPECT_TRUE(fSearch());
    EXPECT_EQ(Count(fSearch), 0);
}

TEST(Allocations, AreNoneForShortTextsInVariablesThatExist)
{
    OpenContext oContext(new OneTaskMachine(nullptr));
    auto const fUse = [&](int iNumber, char const * sText)
    {
        oContext.SetVar("a number", iNumber);
        oContext.SetVar("a text", sText);
        return oContext.GetVar("a number", 0) == iNumber && oContext.GetVar("a text", "none") == sText
               && oContext.GetVar("absent", 3) == 3;
    };
    EXPECT_TRUE(fUse(1, "first"));
    EXPECT_EQ(Count([&] { return fUse(2, "fifteen letters"); }), 0);
}
