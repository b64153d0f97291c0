#include "TestPrelude.h"

using namespace tsl;
using namespace tsltest;

namespace
{

using Call = std::function<void(ValueString &)>;

TEST(ValueStringNull, IsRefusedByAllThatNeedsText)
{
    ValueString const sOther("x");
    ValueString sNull;
    std::map<std::string, std::vector<std::function<void()>>> const oCalls = {
        {"!m_bNull",
            {[&] { sNull.Trim(); }, [&] { sNull.GetLength(); }, [&] { sNull.IsEmpty(); },
                [&] { sNull.GetAt(0); }, [&] { sNull.Mid(0, 1); }, [&] { sNull.Right(0); },
                [&] { sNull.CutLeft(0); }, [&] { sNull.CutMid(0, 0); }, [&] { sNull.Find('x', 0); },
                [&] { sNull.Replace("x", "y", 0); }, [&] { ValueString("x").Replace(sOther, sNull, 0); },
                [&] { sNull.c_str(); }, [&] { return "x" == sNull; }}},
        {"!m_bNull && !s.m_bNull", {[&] { ValueString("x").Insert(0, sNull); }}},
        {"!m_bNull && !Source.m_bNull", {[&] { return sOther == sNull; }}},
        {"!s.IsNull()", {[&] { ValueString("x") << sNull; }}},
    };
    for (auto const & [sExpression, vCalls] : oCalls)
        EXPECT_TRUE(AllAssert(sExpression, "Invalid operation. ValueString is NULL", vCalls)) << sExpression;
    EXPECT_TRUE(sNull.IsNull());
}

TEST(ValueStringNull, EndsWithEveryTextThatIsPutIn)
{
    std::pair<char const *, Call> const aRows[] = {
        {"", [](ValueString & s) { s.Clear(); }},
        {"a", [](ValueString & s) { s = std::string("a"); }},
        {"b", [](ValueString & s) { s = 'b'; }},
        {"c", [](ValueString & s) { s = String("c"); }},
        {"1", [](ValueString & s) { s.Format("%d", 1); }},
        {"-5d0.500000", [](ValueString & s) { s << -5 << 'd' << 0.5f; }},
        {"x7", [](ValueString & s) { s = s + "x" + ValueInt32(7); }},
    };
    for (auto const & [sAfter, fCall] : aRows)
    {
        ValueString sText;
        fCall(sText);
        ASSERT_FALSE(sText.IsNull()) << sAfter;
        EXPECT_EQ(sText.s_str(), sAfter);
    }
}

TEST(ValueStringNull, StaysWhereNoTextIsNeeded)
{
    ValueString sText;
    sText.Reserve(100);
    sText.Delete(0, 1);
    EXPECT_THROW(sText.Format("%3999d", 1), Exception);
    EXPECT_TRUE(sText.IsNull());
    EXPECT_EQ(ValueString("x").Find(sText, 0), 0);

    sText = "text";
    sText.SetNull();
    EXPECT_EQ(sText << "x", "x") << "the old text is gone";
    EXPECT_EQ(sText << sText, "xx");
    ValueString sMoved(std::move(sText));
    EXPECT_TRUE(sText.IsNull());
    EXPECT_EQ(sMoved = sMoved.c_str() + 1, "x");
}

TEST(ValueComparing, NeedsTheSameClassAndTakesNullForNull)
{
    ValueString const sNull;
    EXPECT_EQ(sNull.CompareTo(ValueString()), Value::eEqual);
    EXPECT_EQ(sNull.CompareTo(ValueString("")), Value::eNotComparable);
    EXPECT_EQ(ValueString("a").CompareTo(ValueString("b")), Value::eLess);
    EXPECT_EQ(ValueString("a").CompareTo(ValueString("")), Value::eGreater);
}

} // namespace
