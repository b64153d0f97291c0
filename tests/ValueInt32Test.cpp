#include "TestPrelude.h"

using namespace tsl;
using namespace tsltest;

namespace
{

enum Answer
{
    eAnswer = 42
};

TEST(ValueInt32Arithmetic, WrapsAround)
{
    Rows<int, void (*)(ValueInt32 &), int> aRows = {
        {INT_MAX, [](ValueInt32 & i) { i += 1; }, INT_MIN},
        {-46341, [](ValueInt32 & i) { i *= i; }, -2147479015},
        {INT_MIN, [](ValueInt32 & i) { i /= -1; }, INT_MIN},
        {-7, [](ValueInt32 & i) { i %= ValueInt32(4); }, -3},
        {12, [](ValueInt32 & i) { ((i &= 6) |= ValueInt32(3)) ^= 5; }, 2},
        {INT_MAX, [](ValueInt32 & i) { ++i; }, INT_MIN},
        {INT_MIN, [](ValueInt32 & i) { i = -i; }, INT_MIN},
        {INT_MIN, [](ValueInt32 & i) { i--; }, INT_MAX},
        {5, [](ValueInt32 & i) { i = (i + 5 - ValueInt32(2)) * 7 / 3 % 10; }, 8},
        {4, [](ValueInt32 & i) { i = 7 * (9 - i) / i % i + i + eAnswer - 2L; }, 44},
    };
    for (auto const & [iBefore, fChange, iAfter] : aRows)
    {
        ValueInt32 iNumber(iBefore);
        fChange(iNumber);
        EXPECT_EQ(iNumber.AsInt32(), iAfter) << iBefore << " to " << iAfter;
    }

    ValueInt32 iNumber(5);
    EXPECT_TRUE(AllAssert("iDivisor != 0", "Invalid operation. Division of ValueInt32 by zero",
        {[&] { iNumber /= 0; }, [&] { iNumber %= ValueInt32(); }, [] { return 5 / ValueInt32(0); }}));
    EXPECT_EQ(iNumber, 5);
}

TEST(ValueInt32Arithmetic, TakesTheNullStateFromTheLeft)
{
    ValueInt32 const iNull;
    EXPECT_TRUE((iNull + 5).IsNull());
    EXPECT_FALSE((ValueInt32(5) + iNull).IsNull());

    ValueInt32 iNumber;
    iNumber += 3;
    EXPECT_TRUE((++iNumber).IsNull());
    EXPECT_FALSE((iNumber++).IsNull());
    iNumber = 7;
    iNumber.SetNull();
    EXPECT_EQ(iNumber.AsInt32(), 0);
}

TEST(ValueInt32Comparing, RefusesNullOnTheLeftAlone)
{
    ValueInt32 const iNull;
    EXPECT_EQ(GetOrder(ValueInt32(0), iNull), 0);
    EXPECT_EQ(GetOrder(ValueInt32(42), eAnswer), 0);
    EXPECT_TRUE(ValueInt32(1) <= 1L);

    EXPECT_TRUE(AllAssert("!m_bNull", "Invalid operation. ValueInt32 is NULL",
        {[&] { return iNull == 0; }, [&] { return iNull != 0L; }, [&] { return iNull < ValueInt32(1); },
            [&] { return iNull >= eAnswer; }}));
    EXPECT_EQ(ValueInt32(INT_MIN).CompareTo(ValueInt32(INT_MAX)), Value::eLess);
}

TEST(ValueInt32Text, IsReadFromDigitsAloneAndWrittenInTheDefaultLayout)
{
    char const * const sOnlyDigits = "Only digits allowed. integer := [whitespace]*[-+][0-9]+[whitespace]*";
    char const * const sTooLong = "Overflow. Max 10 digits allowed for ValueInt32.";
    // 77 if nothing is read.
    Rows<char const *, int, std::string> aRows = {
        {"+42", 42, ""},
        {"-2147483648", INT_MIN, ""},
        {"2147483648", 77, "Overflow. Biggest number for ValueInt32 is 2147483647."},
        {"-2147483649", 77, "Overflow. Smalest number for ValueInt32 is -2147483648."},
        {"+12345678901", 77, sTooLong},
        {"   ", 77, "At least one digit expected."},
        {"-", 77, sOnlyDigits},
        {"1234567890123x", 77, sOnlyDigits},
    };
    for (auto const & [sText, iExpected, sFailure] : aRows)
    {
        ValueInt32 iNumber(77);
        Result const oResult = iNumber.GetConverter().ConvertFromText(sText, iNumber);
        EXPECT_EQ(iNumber.AsInt32(), iExpected) << sText;
        EXPECT_EQ(oResult.IsOk() ? "" : oResult.GetText().s_str(), sFailure);
    }

    ValueInt32 iNumber;
    EXPECT_TRUE(iNumber.GetConverter().ConvertFromText("0", iNumber).IsOk());
    EXPECT_FALSE(iNumber.IsNull());

    ValueString sText;
    ValueInt32().AddAsString(sText);
    EXPECT_EQ(ValueInt32(INT_MIN).AddAsString(sText) + ValueInt32(5), "NULL-21474836485");
    EXPECT_TRUE(Asserts("!i.IsNull()", "Invalid operation. Value is NULL", [&] { sText += ValueInt32(); }));
}

} // namespace
