#include "TestPrelude.h"

using namespace tsl;
using namespace tsltest;

namespace
{

/// A failure with causes, all told by their texts: the nearest first.
Result MakeChain(std::initializer_list<char const *> vTexts)
{
    Result oChain;
    for (auto pText = std::rbegin(vTexts); pText != std::rend(vTexts); ++pText)
        oChain.InsertFront(Result(1, *pText, Result::eCategoryDefault));
    return oChain;
}

/// The texts of a failure and of its history, which must be flat.
std::string GetTexts(Result const & oResult)
{
    std::string sTexts = oResult.IsOk() ? "ok" : oResult.GetText().s_str();
    for (int i = 0; i < oResult.GetHistorySize(); ++i)
        sTexts +=
            (oResult.GetHistory(i).GetHistorySize() ? "+" : " ") + oResult.GetHistory(i).GetText().s_str();
    return sTexts;
}

TEST(ResultState, IsThatOfTheBodyAndNeverOfTheCode)
{
    EXPECT_TRUE(Result(0, "", Result::eCategoryDefault).IsError());
    std::function<void(Result &)> const aSetters[] = {[](Result & o) { o.SetText(ValueString()); },
        [](Result & o) { o.SetSource("f", 3); }, [](Result & o) { o.SetCause("why"); }};
    for (auto const & fSet : aSetters)
    {
        Result oResult;
        oResult.SetNull();
        fSet(oResult);
        EXPECT_TRUE(oResult.IsError());
        EXPECT_TRUE(oResult.GetText().IsNull());
    }

    std::string const sLong(1000, 'l');
    Result oResult;
    oResult.SetSource(sLong.c_str(), 1);
    oResult.SetSource(oResult.GetSourceFile() + 1, 2);
    EXPECT_EQ(Result(oResult).GetSourceFile(), sLong.substr(1));
}

TEST(ResultHistory, IsReplacedBySetPreviousAndGrowsByInsertFront)
{
    Result oResult;
    oResult.SetPrevious(MakeChain({"a", "b"}));
    oResult.SetPrevious(Result());
    EXPECT_EQ(GetTexts(oResult), "a b") << "a success becomes a copy";
    oResult.SetPrevious(MakeChain({"c", "d", "e"}));
    oResult.SetPrevious(oResult.GetHistory(1));
    oResult.SetPrevious(oResult);
    EXPECT_EQ(GetTexts(oResult), "a a d");

    // The assignment inside accumulates the histories when both have one.
    Result oSelf = MakeChain({"a", "b"});
    EXPECT_EQ(GetTexts(oSelf.InsertFront(oSelf)), "a b a b");
    for (int const i : {-1, 4})
        EXPECT_TRUE(Asserts(
            "ix>=0 && ix<GetHistorySize()", "Index out of range.", [&] { return oSelf.GetHistory(i); }))
            << i;
}

TEST(ResultCopying, AccumulatesHistoriesAndElseReplaces)
{
    Result const oChain = MakeChain({"a", "b"});
    Rows<Result, Result, char const *> aRows = {
        {oChain, Result(), "ok"},
        {oChain, MakeChain({"c"}), "c"},
        {oChain, MakeChain({"c", "d", "e"}), "c b d e"},
    };
    for (auto const & [oTarget, oSource, sAfter] : aRows)
    {
        Result oMoved = oTarget;
        oMoved = Result(oSource);
        EXPECT_EQ(GetTexts(oMoved), sAfter);
    }

    Result oResult = oChain;
    Result & oSame = oResult;
    oResult = oSame;
    oResult = std::move(oSame);
    EXPECT_EQ(GetTexts(oResult), "a b");
    EXPECT_EQ(GetTexts(oResult.GetWithoutHistory()), "a");
    oResult = oResult.GetHistory(0);
    EXPECT_EQ(GetTexts(oResult), "b");
    EXPECT_TRUE(Result(std::move(oResult)).IsError());
    EXPECT_TRUE(oResult.IsOk());
}

std::vector<int> GetCodes(Result const & oResult)
{
    std::vector<int> vCodes(oResult.IsError() ? 1 : 0, oResult.GetErrorCode());
    for (int i = 0; i < oResult.GetHistorySize(); ++i)
        vCodes.push_back(oResult.GetHistory(i).GetErrorCode());
    return vCodes;
}

std::vector<int> Join(std::vector<int> vCodes, std::vector<int> const & vMore, std::size_t iFrom = 0)
{
    vCodes.insert(vCodes.end(), vMore.begin() + static_cast<std::ptrdiff_t>(std::min(iFrom, vMore.size())),
        vMore.end());
    return vCodes;
}

std::vector<int> Assign(std::vector<int> const & vTarget, std::vector<int> const & vSource)
{
    if (vTarget.empty() || vSource.size() < 2)
        return vSource;
    return Join(Join({vSource[0]}, vTarget, 1), vSource, 1);
}

TEST(ResultHistory, HasTheSameEntriesInAnyOrderOfOperations)
{
    Result aResults[4];
    std::vector<int> aCodes[4];
    std::mt19937 fRandom(12);
    for (int i = 1; i <= 20'000; ++i)
    {
        std::size_t const a = fRandom() % 4;
        std::size_t const b = (a + 1 + fRandom() % 3) % 4;
        std::vector<int> const vBefore = aCodes[a];
        switch (aCodes[a].size() + aCodes[b].size() > 300 ? 0 : fRandom() % 4)
        {
        case 0:
            aResults[a].Clear();
            aResults[a] = Result(i, "", Result::eCategoryDefault);
            aCodes[a] = {i};
            break;
        case 1:
            aResults[a].SetPrevious(aResults[b]);
            if (!aCodes[b].empty())
                aCodes[a] = vBefore.empty() ? aCodes[b] : Join({vBefore[0]}, aCodes[b]);
            break;
        case 2:
            aResults[a].InsertFront(aResults[b]);
            if (!aCodes[b].empty())
                aCodes[a] = Join(Assign(vBefore, aCodes[b]), vBefore);
            break;
        default:
            aResults[a] = aResults[b];
            aCodes[a] = Assign(vBefore, aCodes[b]);
        }
        ASSERT_EQ(GetCodes(aResults[a]), aCodes[a]) << i;
        ASSERT_EQ(GetCodes(aResults[b]), aCodes[b]) << i;
    }
}

TEST(ResultText, HasAllCausesWithTheirPlaces)
{
    Result const oPlaced = MakeResult(5, "no file. ", "a/b.cpp", 7);
    Rows<Result, char const *> aRows = {
        {Result(), ""},
        {Result(5, "x", Result::eCategoryDefault), "x"},
        {MakeResult(2, "top", MakeChain({"one\ntwo", "three"}), "c.cpp", 1),
            "top [c.cpp:1]\n    one\n    two\n    three"},
        {Result(2, "", oPlaced), "Bad data\n    no file. [a/b.cpp:7]"},
        {Result(5, ValueString(), Result::eCategoryDefault), "Not found"},
    };
    for (auto const & [oResult, sText] : aRows)
        EXPECT_EQ(oResult.GetTextWithCauses().s_str(), sText);
}

TEST(ResultHistory, MayBeLongAndSharedByThreads)
{
    constexpr int DEPTH = 100'000;
    Result oResult(-1, "first", Result::eCategoryDefault);
    for (int i = 0; i < DEPTH; ++i)
        oResult.InsertFront(Result(i, "wrapped", Result::eCategoryDefault));
    RunOnThreads(2,
        [oShared = oResult](int)
        {
            Result oOwn = oShared;
            oOwn.InsertFront(Result(1, "own", Result::eCategoryDefault));
            EXPECT_EQ(oOwn.GetHistorySize(), DEPTH + 1);
            EXPECT_EQ(oOwn.GetHistory(DEPTH).GetText(), ValueString("first"));
        });
}

TEST(ResultMaking, TakesCategoryAndHistoryFromThePreviousFailure)
{
    Result const oCause(7, "cause", Result::eCategoryFault);
    Result oExpected(5, "b", Result::eCategoryFault);
    oExpected.SetSource("tests/ResultTest.cpp", __LINE__ + 2);
    oExpected.SetPrevious(oCause);
    EXPECT_EQ(MakeResult(5, "b", oCause), oExpected);
}

TEST(ResultComparing, LooksAtAllFieldsAndTheHistory)
{
    Result oResult = MakeChain({"a", "b"});
    oResult.SetSource("f", 3);
    std::function<void(Result &)> const aChanges[] = {[](Result & o) { o.SetText("other"); },
        [](Result & o) { o.SetText(ValueString()); }, [](Result & o) { o.SetCause(""); },
        [](Result & o) { o.SetSource("other", 3); }, [](Result & o) { o.SetSource("f", 4); },
        [](Result & o) { o.SetPrevious(MakeChain({"c"})); }, [](Result & o) { o.Clear(); },
        [](Result & o) { o = o.GetWithoutHistory(); }};
    for (auto const & fChange : aChanges)
    {
        Result oOther = oResult;
        fChange(oOther);
        EXPECT_NE(oOther, oResult) << GetTexts(oOther);
        EXPECT_EQ(oOther.CompareTo(oResult), Value::eNotComparable);
    }
    EXPECT_NE(Result(1, "a", Result::eCategoryIo), Result(1, "a", Result::eCategoryFault));
    std::unique_ptr<Root> const pCopy(oResult.GetCopy());
    EXPECT_EQ(oResult.CompareTo(dynamic_cast<Result const &>(*pCopy)), Value::eEqual);
}

TEST(Failures, HaveTextsForTheirCodes)
{
    char const * const aTexts[] = {"No error", "Access denied", "Bad data",
        "Operation (in current state) not allowed", "Out of range", "Not found", "Internal programm error",
        "Unknown error", "No more data available", "There is more data available", "Error from subsystem",
        "Timeout occured", "Terminated", "Unknown error"};
    for (int iCode = 0; char const * const sText : aTexts)
        EXPECT_STREQ(ERR::GetErrorText(iCode++), sText);
    EXPECT_STREQ(ERR::GetErrorText(-1), "Unknown error");
}

TEST(Failures, AreThrownAsExceptionsWithAResult)
{
    Result const oCause = MakeChain({"a", "b"});
    EXPECT_EQ(Catch([&] { Exception::Throw(oCause); }).GetResult(), oCause);
    Result oExpected(6, "XAssertion. Expression \"x>0\" failed. ", Result::eCategoryFault);
    oExpected.SetSource("f", 7);
    oExpected.SetPrevious(oCause);
    EXPECT_EQ(Catch([&] { XAssertionFailed("x>0", oCause, "f", 7); }).GetResult(), oExpected);
    EXPECT_TRUE(Asserts("x>0", "bad", [] { XAssertionFailed("x>0", String("bad")); }));

    EXPECT_STREQ(Exception(6, "x", "f", 7).GetText(), "x");
    EXPECT_EQ(Exception(6, "x", "f", 7).GetResult().GetSourceLine(), 7);
}

} // namespace
