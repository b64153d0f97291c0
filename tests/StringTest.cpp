#include "TestPrelude.h"

#include <cstdio>

using namespace tsl;
using namespace tsltest;

namespace
{

String const WITH_ZERO(std::string("ab\0cd", 5));

TEST(StringEditing, CutsAndInsertsWhereItIsTold)
{
    Rows<std::string, void (*)(String &), std::string> aRows = {
        {"abcde", [](String & s) { s.CutLeft(2); }, "cde"},
        {"abcde", [](String & s) { s.CutRight(2); }, "abc"},
        {"abcde", [](String & s) { s.CutMid(1, UINT_MAX); }, "a"},
        {"abcde", [](String & s) { s.Delete(6, 1); }, "abcde"},
        {"abcde", [](String & s) { s.Insert(UINT_MAX, "-"); }, "abcde-"},
        {"abcde", [](String & s) { s.Insert(2, s); }, "ababcdecde"},
        {"abcde", [](String & s) { s.Insert(1, s.c_str() + 3, 1); }, "adbcde"},
        {"abcde", [](String & s) { s = 'b'; }, "b"},
        {"abcde", [](String & s) { s.Append(nullptr, 4); }, "abcde"},
        {"ab", [](String & s) { s.Replace(s, s + "c", 0); }, "abc"},
        {" \t\n\v\f\r aB\xE4 \t\n\v\f\r ", [](String & s) { s.Trim(); }, "aB\xE4"},
        {"aB\xE4z1", [](String & s) { s.Upper(); }, "AB\xE4Z1"},
        {"AbC\xC4", [](String & s) { s.Lower(); }, "abc\xC4"},
    };
    for (auto const & [sBefore, fEdit, sAfter] : aRows)
    {
        String sText(sBefore);
        fEdit(sText);
        EXPECT_EQ(sText.s_str(), sAfter) << sBefore << " to " << sAfter;
    }
}

TEST(StringParts, StopAtAZeroByteUnlessTheWholeTextIsTaken)
{
    EXPECT_EQ(WITH_ZERO.Mid(0), "ab");
    EXPECT_EQ(WITH_ZERO.Right(2), "cd");
    EXPECT_NE(WITH_ZERO, "ab");
    EXPECT_TRUE(String("abc").Mid(3).IsEmpty());
    EXPECT_THROW(static_cast<void>(String("abc").Mid(4)), std::out_of_range);
    EXPECT_THROW(static_cast<void>(String("abc")[3]), std::out_of_range);
}

TEST(StringSearching, FindsFromAPositionAndNothingPastTheEnd)
{
    String const sText("banana");
    EXPECT_EQ(sText.Find("na", 3), 4);
    EXPECT_EQ(sText.Find('a', 6), -1);
    EXPECT_EQ(sText.Find("", 7), -1);
    EXPECT_EQ(sText.FindFirstOf("nx", 0), 2);
    EXPECT_EQ(sText.FindFirstOf(String("b"), 1), -1);
    EXPECT_EQ(sText.FindReverse('n'), 4);
    EXPECT_EQ(sText.FindReverse('n', 3), 2);
    EXPECT_EQ(sText.FindReverse('a', 7), -1);

    // What Replace finds, and what it leaves: the first occurrence goes alone.
    Rows<char const *, unsigned int, int, char const *> aRows = {
        {"an", 2, 3, "ban-a"},
        {"", 7, -1, "banana"},
    };
    for (auto const & [sWhat, iPosition, iFound, sAfter] : aRows)
    {
        String sReplaced(sText);
        EXPECT_EQ(sReplaced.Replace(sWhat, "-", iPosition), iFound) << sAfter;
        EXPECT_EQ(sReplaced.s_str(), sAfter);
    }
}

class Name : public String
{
public:
    using String::String;

    StringFormator const & GetFormator() const override
    {
        static StringFormator const oFormator(1 + 4 + 8);
        return oFormator;
    }
};

TEST(StringComparing, TakesEveryKindOfTextOnBothSides)
{
    String const sText("abc");
    EXPECT_EQ(GetOrder(sText, std::string("ab")), 1);
    EXPECT_EQ(GetOrder("abc", sText), 0);
    EXPECT_EQ(GetOrder(sText, String("abc")), 0);
    EXPECT_EQ(GetOrder(Name("x"), Name("y")), -1);
    EXPECT_GT(String("\xE4"), "a") << "bytes are unsigned between texts";

    // A single byte meets the first byte alone, and there bytes are signed.
    Rows<String, char, int> aRows = {
        {"abc", 'a', 0},
        {"\xE4", 'a', -1},
    };
    for (auto const & [sLeft, cOther, iOrder] : aRows)
        EXPECT_EQ(GetOrder(sLeft, cOther), iOrder) << sLeft.c_str() << " and " << cOther;
}

TEST(StringAppending, WritesNumbersAsPrintfDoes)
{
    char aAddress[32];
    void * const pAddress = aAddress;
    std::snprintf(aAddress, sizeof aAddress, "%p", pAddress);
    String sText("<");
    sText << INT_MIN << ' ' << UINT_MAX << ' ' << 1.5f << ' ' << -0.125 << ' ' << pAddress;
    EXPECT_EQ(sText, "<-2147483648 4294967295 1.500000 -0.125000 " + std::string(aAddress));

    String const sLeft("a");
    EXPECT_EQ(sLeft + std::string("b") + 'c' + 1 + 2u + sLeft, "abc12a");
}

TEST(StringFormatting, EndsAtItsLimitAndKeepsTheTextThen)
{
    String sText("before");
    EXPECT_TRUE(Asserts("i >= 0", "Buffer overflow. Formatting argList with string as \"%3999d\" failed.",
        [&] { sText.Format("%3999d", 1); }));
    EXPECT_EQ(sText, "before");
    sText.Format("%3998d", 1);
    EXPECT_EQ(sText.GetLength(), 3998u);
    sText.Format("<%s%c%s", sText.Right(2).c_str(), '\0', "lost");
    sText.Format("%s>", sText.c_str());
    EXPECT_EQ(sText, "< 1>");
}

TEST(StringRules, AreThoseOfTheTextsClass)
{
    Name sName("  aB ");
    sName.Formate();
    EXPECT_EQ(sName, "AB");
    EXPECT_TRUE(String("").Validate().IsOk());
}

} // namespace
