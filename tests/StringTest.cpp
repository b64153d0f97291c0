#include "AssertionTest.h"

#include <tessel/String.h>
#include <tessel/StringFormator.h>
#include <tessel/StringValidator.h>

#include <climits>
#include <cstdio>
#include <stdexcept>

using tsl::String;

namespace
{

String const WITH_ZERO(std::string("ab\0cd", 5));

/// What an operation makes of a text.
template<class Edit>
std::string Edited(char const * sBefore, Edit && fEdit)
{
    String sText(sBefore);
    fEdit(sText);
    return sText.s_str();
}

TEST(StringEditing, CutsAndInsertsWhereItIsTold)
{
    EXPECT_EQ(Edited("abcde", [](String & s) { s.CutLeft(2); }), "cde");
    EXPECT_EQ(Edited("abcde", [](String & s) { s.CutLeft(UINT_MAX); }), "");
    EXPECT_EQ(Edited("abcde", [](String & s) { s.CutRight(2); }), "abc");
    EXPECT_EQ(Edited("abcde", [](String & s) { s.CutRight(UINT_MAX); }), "");
    EXPECT_EQ(Edited("abcde", [](String & s) { s.CutMid(1, 3); }), "ae");
    EXPECT_EQ(Edited("abcde", [](String & s) { s.CutMid(1, UINT_MAX); }), "a");
    EXPECT_EQ(Edited("abcde", [](String & s) { s.CutMid(5, 5); }), "abcde");
    EXPECT_EQ(Edited("abcde", [](String & s) { s.Delete(6, 1); }), "abcde");
    EXPECT_EQ(Edited("abcde", [](String & s) { s.Insert(1, "--"); }), "a--bcde");
    EXPECT_EQ(Edited("abcde", [](String & s) { s.Insert(UINT_MAX, "-"); }), "abcde-");
    EXPECT_EQ(Edited("abcde", [](String & s) { s.Insert(2, s); }), "ababcdecde");
    EXPECT_EQ(Edited("abcde", [](String & s) { s.Insert(0, "xyz", 10); }), "xyzabcde");
    EXPECT_EQ(Edited("abcde", [](String & s) { s.Insert(1, s.c_str() + 3, 1); }), "adbcde");
    EXPECT_EQ(Edited("abcde", [](String & s) { s.Append("xyz", 1); }), "abcdex");
    EXPECT_EQ(Edited("abcde", [](String & s) { s.Append(nullptr, 4); }), "abcde");
    EXPECT_EQ(Edited("abcde", [](String & s) { s << s.c_str(); }), "abcdeabcde");
    EXPECT_EQ(Edited(" \t\n\v\f\r aB\xE4 \t\n\v\f\r ", [](String & s) { s.Trim(); }), "aB\xE4");
    EXPECT_EQ(Edited("aB\xE4z1", [](String & s) { s.Upper(); }), "AB\xE4Z1");
    EXPECT_EQ(Edited("AbC\xC4", [](String & s) { s.Lower(); }), "abc\xC4");
}

TEST(StringEditing, ReplacesTheFirstOccurrenceOnly)
{
    struct Row
    {
        char const * sWhat;
        unsigned int iPosition;
        int iFound;
        char const * sAfter;
    };
    for (Row const & oRow : {Row{"an", 0, 1, "b-ana"}, Row{"an", 2, 3, "ban-a"}, Row{"", 2, 2, "ba-nana"},
             Row{"", 6, 6, "banana-"}, Row{"", 7, -1, "banana"}, Row{"nix", 0, -1, "banana"}})
    {
        String sText("banana");
        EXPECT_EQ(sText.Replace(oRow.sWhat, "-", oRow.iPosition), oRow.iFound) << oRow.sAfter;
        EXPECT_EQ(sText.s_str(), oRow.sAfter);
    }
    EXPECT_EQ(Edited("ab", [](String & s) { s.Replace(s, s + "c", 0); }), "abc");
    EXPECT_EQ(Edited("ab", [](String & s) { s.Replace("b", s.c_str(), 0); }), "aab");
}

TEST(StringParts, StopAtAZeroByteUnlessTheWholeTextIsTaken)
{
    EXPECT_EQ(WITH_ZERO.Mid(0), "ab");
    EXPECT_EQ(WITH_ZERO.Mid(1, UINT_MAX), "b");
    EXPECT_EQ(WITH_ZERO.Left(9), "ab");
    EXPECT_EQ(WITH_ZERO.Right(5), "ab");
    EXPECT_EQ(WITH_ZERO.Right(6).GetLength(), 5u);
    EXPECT_EQ(WITH_ZERO.Right(2), "cd");
    EXPECT_TRUE(String("abc").Mid(3).IsEmpty());
    EXPECT_THROW(static_cast<void>(String("abc").Mid(4)), std::out_of_range);
    EXPECT_THROW(static_cast<void>(String("abc").Mid(4, 0)), std::out_of_range);
    EXPECT_THROW(static_cast<void>(String("abc")[3]), std::out_of_range);
}

TEST(StringSearching, FindsFromAPositionAndNothingPastTheEnd)
{
    String const sText("banana");
    EXPECT_EQ(sText.Find('a', 2), 3);
    EXPECT_EQ(sText.Find('a', 6), -1);
    EXPECT_EQ(sText.Find("na", 3), 4);
    EXPECT_EQ(sText.Find("", 6), 6);
    EXPECT_EQ(sText.Find("", 7), -1);
    EXPECT_EQ(sText.Find(String("nan"), 3), -1);
    EXPECT_EQ(sText.FindFirstOf("nx", 0), 2);
    EXPECT_EQ(sText.FindFirstOf(String("b"), 1), -1);
    EXPECT_EQ(sText.FindReverse('n'), 4);
    EXPECT_EQ(sText.FindReverse('n', 3), 2);
    EXPECT_EQ(sText.FindReverse('a', 6), 5);
    EXPECT_EQ(sText.FindReverse('a', 7), -1);
}

TEST(StringComparing, MeetsASingleByteWithItsFirstByteAlone)
{
    struct Row
    {
        char const * sText;
        char cOther;
        char const * sTrue; ///< the operators that hold
    };
    // In the last row the bytes are signed.
    for (Row const & oRow : {Row{"", 'a', "!= < <= "}, Row{"abc", 'a', "== <= >= "},
             Row{"abc", 'b', "!= < <= "}, Row{"b", 'a', "!= > >= "}, Row{"\xE4", 'a', "!= < <= "}})
    {
        String const sText(oRow.sText);
        std::string sTrue;
        sTrue += sText == oRow.cOther ? "== " : "";
        sTrue += sText != oRow.cOther ? "!= " : "";
        sTrue += sText < oRow.cOther ? "< " : "";
        sTrue += sText > oRow.cOther ? "> " : "";
        sTrue += sText <= oRow.cOther ? "<= " : "";
        sTrue += sText >= oRow.cOther ? ">= " : "";
        EXPECT_EQ(sTrue, oRow.sTrue) << oRow.sText << " and " << oRow.cOther;
    }
}

/// A text with rules of its own.
class Name : public String
{
public:
    using String::String;

    tsl::StringValidator const & GetValidator() const override
    {
        static tsl::StringValidator const oValidator(2, 4);
        return oValidator;
    }

    tsl::StringFormator const & GetFormator() const override
    {
        static tsl::StringFormator const oFormator(1 + 4 + 8);
        return oFormator;
    }
};

TEST(StringComparing, TakesEveryKindOfTextOnBothSides)
{
    String const sText("abc");
    EXPECT_TRUE(sText == std::string("abc") && std::string("abc") == sText);
    EXPECT_TRUE(sText == "abc" && "abc" == sText && sText != "abd" && "abd" != sText);
    EXPECT_TRUE(sText < "abd" && sText <= String("abc") && sText > std::string("ab") && sText >= "");
    EXPECT_TRUE(Name("x") == Name("x") && Name("x") != Name("y") && Name("x") < Name("y"));
    EXPECT_GT(String("\xE4"), "a") << "bytes are unsigned between texts";
    EXPECT_NE(WITH_ZERO, "ab");
}

TEST(StringAppending, WritesNumbersAsPrintfDoes)
{
    char aAddress[32];
    void * const pAddress = aAddress;
    std::snprintf(aAddress, sizeof aAddress, "%p", pAddress);
    String sText("<");
    sText << INT_MIN << ' ' << UINT_MAX << ' ' << 1.5f << ' ' << -0.125 << ' ' << pAddress;
    EXPECT_EQ(sText, std::string("<-2147483648 4294967295 1.500000 -0.125000 ") + aAddress);

    String const sLeft("a");
    EXPECT_EQ(sLeft + std::string("b") + 'c' + 1 + 2u + sLeft, "abc12a");
    EXPECT_EQ((String() << -1.7976931348623157e308).GetLength(), 317u);
}

TEST(StringFormatting, EndsAtItsLimitAndKeepsTheTextThen)
{
    String sText("before");
    EXPECT_TRUE(
        tsltest::Asserts("i >= 0", "Buffer overflow. Formatting argList with string as \"%3999d\" failed.",
            [&] { sText.Format("%3999d", 1); }));
    EXPECT_EQ(sText, "before");
    sText.Format("%3998d", 1);
    EXPECT_EQ(sText.GetLength(), 3998u);
    sText.Format("<%s%c%s", sText.Right(2).c_str(), '\0', "lost");
    EXPECT_EQ(sText, "< 1");
    sText.Format("%s>", sText.c_str());
    EXPECT_EQ(sText, "< 1>");
}

TEST(StringRules, AreThoseOfTheTextsClass)
{
    EXPECT_TRUE(String("").Validate().IsOk());
    EXPECT_TRUE(Name("ab").Validate().IsOk() && Name("abcd").Validate().IsOk());
    EXPECT_EQ(Name("a").Validate().GetText(), "String must contain at least 2 letters.");
    EXPECT_EQ(Name("abcde").Validate().GetText(), "String must contain at most 4 letters.");
    EXPECT_EQ(Name("abcde").Validate().GetErrorCode(), 4);

    Name sName("  aB ");
    sName.Formate();
    EXPECT_EQ(sName, "AB");
    String sPlain(" aB ");
    sPlain.Formate();
    EXPECT_EQ(sPlain, " aB ");
    tsl::StringFormator(1 + 2).Format("aB", sPlain);
    EXPECT_EQ(sPlain, "ab");
}

} // namespace
