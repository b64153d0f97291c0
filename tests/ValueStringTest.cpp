#include "TestPrelude.h"

using namespace tsl;
using namespace tsltest;

namespace
{

using Call = std::function<void(ValueString &)>;

TEST(ValueStringNull, IsRefusedByAllThatNeedsText)
{
    ValueString const sOther("x");
    std::string const sOwn = "!m_bNull";
    std::pair<std::string, Call> const aRows[] = {
        {sOwn, [](ValueString & s) { s.Trim(); }},
        {sOwn, [](ValueString & s) { s.GetLength(); }},
        {sOwn, [](ValueString & s) { s.IsEmpty(); }},
        {sOwn, [](ValueString & s) { s.GetAt(0); }},
        {sOwn, [](ValueString & s) { s.Mid(0, 1); }},
        {sOwn, [](ValueString & s) { s.Right(0); }},
        {sOwn, [](ValueString & s) { s.CutLeft(0); }},
        {sOwn, [](ValueString & s) { s.CutMid(0, 0); }},
        {sOwn, [](ValueString & s) { s.Find('x', 0); }},
        {sOwn, [](ValueString & s) { s.Replace("x", "y", 0); }},
        {sOwn, [&](ValueString & s) { ValueString("x").Replace(sOther, s, 0); }},
        {sOwn, [](ValueString & s) { s.c_str(); }},
        {sOwn, [](ValueString & s) { return "x" == s; }},
        {"!m_bNull && !s.m_bNull", [](ValueString & s) { ValueString("x").Insert(0, s); }},
        {"!m_bNull && !Source.m_bNull", [&](ValueString & s) { return sOther == s; }},
        {"!s.IsNull()", [](ValueString & s) { ValueString("x") << s; }},
    };
    std::set<std::pair<std::string, int>> oPlaces;
    for (int iRow = 0; auto const & [sExpression, fCall] : aRows)
    {
        SCOPED_TRACE(iRow++);
        ValueString sNull;
        auto const fFail = std::bind_front(fCall, std::ref(sNull));
        EXPECT_TRUE(Asserts(sExpression, "Invalid operation. ValueString is NULL", fFail));
        EXPECT_TRUE(sNull.IsNull());

        // Each check has a place of its own.
        Result const oFailure = Catch(fFail).GetResult();
        EXPECT_TRUE(std::string(oFailure.GetSourceFile()).starts_with("src/tessel/ValueString."));
        EXPECT_TRUE(oPlaces.emplace(oFailure.GetSourceFile(), oFailure.GetSourceLine()).second);
    }
}

TEST(ValueStringNull, EndsWithEveryTextThatIsPutIn)
{
    std::pair<char const *, Call> const aRows[] = {
        {"", [](ValueString & s) { s.Clear(); }},
        {"a", [](ValueString & s) { s = std::string("a"); }},
        {"b", [](ValueString & s) { s = 'b'; }},
        {"c", [](ValueString & s) { s = String("c"); }},
        {"1", [](ValueString & s) { s.Format("%d", 1); }},
        {"", [](ValueString & s) { s += ValueString(""); }},
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
    EXPECT_EQ(sNull.CompareTo(ValueInt32()), Value::eNotComparable);
    EXPECT_EQ(sNull.CompareTo(ValueString("")), Value::eNotComparable);
    EXPECT_EQ(ValueString("").CompareTo(sNull), Value::eNotComparable);
    EXPECT_EQ(ValueString("a").CompareTo(ValueString("b")), Value::eLess);
    EXPECT_EQ(ValueString("a").CompareTo(ValueString("")), Value::eGreater);
}

} // namespace
