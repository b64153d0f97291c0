#include "TestPrelude.h"

#include <patternmatcher/PatternMatcher.h>

using namespace tsl;
using namespace tsltest;

namespace
{

constexpr std::size_t HUGE_LENGTH = 10'000'000;

/// What reading the text comes to: the number, or the failure.
std::string ReadInteger(std::string const & sText, std::string const & sFormat)
{
    ValueInt32 iNumber;
    Result const oResult =
        iNumber.GetConverter().ConvertFromText(sText, iNumber, ValueIntegerConverterLayout(sFormat));
    return oResult.IsOk() ? std::to_string(iNumber.AsInt32()) : oResult.GetText().s_str();
}

TEST(HugeTexts, AreWrittenReadAndSearched)
{
    std::string const sBlanks(HUGE_LENGTH, ' ');
    std::string const sDigits(HUGE_LENGTH, '1');
    EXPECT_EQ(ReadInteger(sBlanks + "-7" + sBlanks, "${%d}"), "-7");
    EXPECT_EQ(ReadInteger(sDigits, "${%d}"), "Overflow. Max 10 digits allowed for ValueInt32.");
    EXPECT_EQ(ReadInteger(sDigits + "-7", sDigits + "${%d}"), "-7");
    EXPECT_EQ(GetText(ValueInt32(7), ValueIntegerConverterLayout(sDigits + "${%d}")), sDigits + '7');

    std::string sUnknown;
    for (std::size_t i = 0; i < HUGE_LENGTH / 4; ++i)
        sUnknown += "${x}";
    EXPECT_EQ(GetText(NamedValue("n", ValueInt32(7)), NamedValueConverterLayout(sUnknown)), sUnknown);

    ValueString sText("");
    EXPECT_GT(Result(1, ValueString(sDigits), Result::eCategoryDefault).AddAsString(sText).GetLength(),
        HUGE_LENGTH);

    PatternMatcher::Matches oMatches;
    PatternMatcher("^(1+)(-?)x").Match(sDigits + 'x', 0, oMatches);
    EXPECT_EQ(oMatches.GetEnd(2), HUGE_LENGTH);
}

TEST(ZeroBytes, AreBytesLikeOthersButForPrintf)
{
    std::string const sZero(1, '\0');
    std::string const sFormat = "a" + sZero + "${%d}";
    EXPECT_EQ(
        GetText(ValueInt32(7), ValueIntegerConverterLayout(sFormat + sZero)), "a" + sZero + "7" + sZero);
    EXPECT_EQ(GetText(ValueInt32(7), ValueIntegerConverterLayout("${%d" + sZero + "%n}")), "7");
    EXPECT_EQ(GetText(ValueString("a" + sZero + "b"), ValueStringConverterLayout()), "a");
    EXPECT_EQ(ReadInteger("a" + sZero + "7", sFormat), "7");
    for (std::string const & sText : {"7" + sZero, sZero + "7", "7" + sZero + "7", "NULL" + sZero})
        EXPECT_EQ(ReadInteger(sText, "${%d}"),
            "Only digits allowed. integer := [whitespace]*[-+][0-9]+[whitespace]*");
}

} // namespace
