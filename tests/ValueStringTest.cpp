#include "AssertionTest.h"

#include <tessel/ValueInt32.h>
#include <tessel/ValueNull.h>

#include <functional>

using tsl::String;
using tsl::Value;
using tsl::ValueString;

namespace
{

using Call = std::function<void(ValueString &)>;

TEST(ValueStringNull, IsRefusedByAllThatNeedsText)
{
    ValueString const sOther("x");
    struct Row
    {
        char const * sExpression;
        Call fCall;
    };
    Row const aRows[] = {
        {"!m_bNull", [](ValueString & s) { s.Trim(); }},
        {"!m_bNull", [](ValueString & s) { s.GetLength(); }},
        {"!m_bNull", [](ValueString & s) { s.IsEmpty(); }},
        {"!m_bNull", [](ValueString & s) { s.GetAt(0); }},
        {"!m_bNull", [](ValueString & s) { s.Mid(0, 1); }},
        {"!m_bNull", [](ValueString & s) { s.Left(0); }},
        {"!m_bNull", [](ValueString & s) { s.Right(0); }},
        {"!m_bNull", [](ValueString & s) { s.CutLeft(0); }},
        {"!m_bNull", [](ValueString & s) { s.CutRight(0); }},
        {"!m_bNull", [](ValueString & s) { s.CutMid(0, 0); }},
        {"!m_bNull", [](ValueString & s) { s.Find('x', 0); }},
        {"!m_bNull", [&](ValueString & s) { s.Find(sOther, 0); }},
        {"!m_bNull", [](ValueString & s) { s.FindReverse('x'); }},
        {"!m_bNull", [](ValueString & s) { s.Replace("x", "y", 0); }},
        {"!m_bNull", [&](ValueString & s) { s.Replace(sOther, sOther, 0); }},
        {"!m_bNull", [&](ValueString & s) { ValueString("x").Replace(s, sOther, 0); }},
        {"!m_bNull", [&](ValueString & s) { ValueString("x").Replace(sOther, s, 0); }},
        {"!m_bNull", [](ValueString & s) { s.c_str(); }},
        {"!m_bNull", [](ValueString & s) { s.Compare(""); }},
        {"!m_bNull", [](ValueString & s) { s.Compare('x'); }},
        {"!m_bNull", [](ValueString & s) { static_cast<void>("x" == s); }},
        {"!m_bNull", [](ValueString & s) { static_cast<void>(std::string() != s); }},
        {"!m_bNull && !s.m_bNull", [&](ValueString & s) { s.Insert(0, sOther); }},
        {"!m_bNull && !s.m_bNull", [](ValueString & s) { ValueString("x").Insert(0, s); }},
        {"!m_bNull && !Source.m_bNull", [&](ValueString & s) { s.Compare(sOther); }},
        {"!m_bNull && !Source.m_bNull", [&](ValueString & s) { static_cast<void>(sOther == s); }},
        {"!s.IsNull()", [](ValueString & s) { ValueString("x") << s; }},
        {"!s.IsNull()", [](ValueString & s) { ValueString("x") + s; }},
    };
    for (int iRow = 0; Row const & oRow : aRows)
    {
        ValueString sNull;
        EXPECT_TRUE(tsltest::Asserts(
            oRow.sExpression, "Invalid operation. ValueString is NULL", [&] { oRow.fCall(sNull); }))
            << "row " << iRow;
        EXPECT_TRUE(sNull.IsNull()) << "row " << iRow++;
    }
}

TEST(ValueStringNull, EndsWithEveryTextThatIsPutIn)
{
    struct Row
    {
        char const * sAfter;
        Call fCall;
    };
    Row const aRows[] = {
        {"", [](ValueString & s) { s.Clear(); }},
        {"", [](ValueString & s) { s = ""; }},
        {"a", [](ValueString & s) { s = std::string("a"); }},
        {"b", [](ValueString & s) { s = 'b'; }},
        {"c", [](ValueString & s) { s = String("c"); }},
        {"1", [](ValueString & s) { s.Format("%d", 1); }},
        {"", [](ValueString & s) { s += ValueString(""); }},
        {"-5d0.500000", [](ValueString & s) { s << -5 << 'd' << 0.5f; }},
        {"x7", [](ValueString & s) { s = s + "x" + tsl::ValueInt32(7); }},
    };
    for (Row const & oRow : aRows)
    {
        ValueString sText;
        oRow.fCall(sText);
        ASSERT_FALSE(sText.IsNull()) << oRow.sAfter;
        EXPECT_EQ(sText.s_str(), oRow.sAfter);
    }
}

TEST(ValueStringNull, StaysWhereNoTextIsNeeded)
{
    ValueString sText;
    sText.Reserve(100);
    sText.Delete(0, 1);
    EXPECT_TRUE(sText.IsNull());
    EXPECT_THROW(sText.Format("%3999d", 1), tsl::Exception);
    EXPECT_TRUE(sText.IsNull());
    EXPECT_EQ(ValueString("x").Find(sText, 0), 0);

    sText = "text";
    sText.SetNull();
    EXPECT_EQ(sText << "x", "x") << "the old text is gone";
    EXPECT_EQ(sText << sText, "xx");
    sText = ValueString::Null();
    EXPECT_TRUE(sText.IsNull());
    sText.Set(ValueString("set"));
    ValueString sMoved(std::move(sText));
    EXPECT_TRUE(sText.IsNull());
    EXPECT_EQ(sMoved = sMoved.c_str() + 1, "et");
}

TEST(ValueComparing, NeedsTheSameClassAndTakesNullForNull)
{
    ValueString const sNull;
    ValueString const sEmpty("");
    ValueString const sA("a");
    ValueString const sB("b");
    EXPECT_EQ(sNull.CompareTo(sNull), Value::eEqual);
    EXPECT_EQ(sNull.CompareTo(ValueString()), Value::eEqual);
    EXPECT_EQ(sNull.CompareTo(tsl::ValueInt32()), Value::eNotComparable);
    EXPECT_EQ(tsl::ValueNull::Null().CompareTo(sNull), Value::eNotComparable);
    EXPECT_EQ(sNull.CompareTo(sEmpty), Value::eNotComparable);
    EXPECT_EQ(sEmpty.CompareTo(sNull), Value::eNotComparable);
    EXPECT_EQ(sA.CompareTo(sB), Value::eLess);
    EXPECT_EQ(sB.CompareTo(sA), Value::eGreater);
    EXPECT_EQ(sA.CompareTo(ValueString("a")), Value::eEqual);
    EXPECT_TRUE(sA < sB && sA <= "a" && sB > 'a' && sB >= std::string("a") && "b" != sA);
}

} // namespace
