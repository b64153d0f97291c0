#include "AssertionTest.h"
#include "ProcessTest.h"

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

TEST(ResultState, IsToldByTheBodyAndNeverByTheCode)
{
    EXPECT_TRUE(Result(0, "", Result::eCategoryDefault).IsError());
    std::function<void(Result &)> const aSetters[] = {[](Result & o) { o.SetText(ValueString()); },
        [](Result & o) { o.SetSource("f", 3); }, [](Result & o) { o.SetCause("why"); }};
    for (auto const & fSet : aSetters)
    {
        Result oResult;
        oResult.SetNull();
        fSet(oResult);
        EXPECT_TRUE(oResult.IsError() && oResult.GetErrorCode() == 0 && oResult.GetText().IsNull());
    }

    std::string const sLong(1000, 'l');
    Result oResult;
    oResult.SetSource(sLong.c_str(), 1);
    EXPECT_EQ(Result(oResult).GetSourceFile(), sLong);
    oResult.SetSource(oResult.GetSourceFile() + 1, 2);
    EXPECT_EQ(oResult.GetSourceFile(), sLong.substr(1));
    oResult.SetSource(nullptr, 4);
    EXPECT_STREQ(oResult.GetSourceFile(), "");
}

TEST(ResultHistory, IsReplacedBySetPreviousAndGrowsByInsertFront)
{
    Result oResult;
    oResult.SetPrevious(MakeChain({"a", "b"}));
    oResult.SetPrevious(Result());
    EXPECT_EQ(GetTexts(oResult), "a b") << "a success becomes a copy";
    oResult.SetPrevious(MakeChain({"c", "d", "e"}));
    EXPECT_EQ(GetTexts(oResult), "a c d e");
    oResult.SetPrevious(oResult.GetHistory(1));
    oResult.SetPrevious(oResult);
    EXPECT_EQ(GetTexts(oResult), "a a d");

    // The assignment inside accumulates the histories when both have one.
    Result oSelf = MakeChain({"a", "b"});
    EXPECT_EQ(GetTexts(Result(oSelf).InsertFront(MakeChain({"d", "e"}))), "d b e a b");
    EXPECT_EQ(GetTexts(oSelf.InsertFront(oSelf)), "a b a b");
    EXPECT_EQ(GetTexts(oSelf.InsertFront(oSelf.GetHistory(2))), "b a b a b");
    for (int const i : {-1, 4})
        EXPECT_TRUE(Asserts(
            "ix>=0 && ix<GetHistorySize()", "Index out of range.", [&] { return oSelf.GetHistory(i); }))
            << i;
}

TEST(ResultCopying, AccumulatesHistoriesAndElseReplaces)
{
    Result const oChain = MakeChain({"a", "b"});
    Rows<Result, Result, char const *> aRows = {{oChain, Result(), "ok"}, {Result(), oChain, "a b"},
        {oChain, MakeChain({"c"}), "c"}, {oChain, MakeChain({"c", "d", "e"}), "c b d e"}};
    for (auto const & [oTarget, oSource, sAfter] : aRows)
    {
        Result oCopied = oTarget;
        oCopied = oSource;
        EXPECT_EQ(GetTexts(oCopied), sAfter);
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
    EXPECT_TRUE(Result(std::move(oResult)).IsError() && oResult.IsOk());
}

TEST(ResultMaking, TakesCategoryAndHistoryFromThePreviousFailure)
{
    Result const oCause(7, "cause", Result::eCategoryFault);
    Result oExpected(5, "b", Result::eCategoryFault);
    oExpected.SetSource("tests/ResultTest.cpp", __LINE__ + 2);
    oExpected.SetPrevious(oCause);
    EXPECT_EQ(MakeResult(5, "b", oCause), oExpected);
    EXPECT_EQ(Result(5, "b", Result()), Result(5, "b", Result::eCategoryDefault));
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
        EXPECT_TRUE(oOther != oResult && oResult != oOther) << GetTexts(oOther);
        EXPECT_EQ(oOther.CompareTo(oResult), Value::eNotComparable);
    }
    EXPECT_NE(Result(1, "a", Result::eCategoryIo), Result(1, "a", Result::eCategoryFault));
    EXPECT_NE(Result(1, "a", Result::eCategoryIo), Result(2, "a", Result::eCategoryIo));
    EXPECT_EQ(oResult.CompareTo(Result(oResult)), Value::eEqual);
}

TEST(ResultCost, IsNoAllocationForASuccess)
{
    EXPECT_EQ(TestProgram("Allocations").Run({"results"}).sOutput, "0\n1\n");
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
    EXPECT_STREQ(Exception(Result(1, ValueString(), Result::eCategoryDefault)).GetText(), "");
}

} // namespace
