#include "AssertionTest.h"

using namespace tsl;

namespace
{

/// The inner splitting is for derived classes.
class Splitter : public Support
{
public:
    using Support::Split;
};

/// The parts as "first|second".
std::string Join(std::vector<String> const & vParts)
{
    std::string sJoined;
    for (String const & sPart : vParts)
        sJoined += (&sPart == &vParts.front() ? "" : "|") + sPart.s_str();
    return sJoined;
}

constexpr int ALL_FLAGS = 59;

TEST(Splitting, FollowsItsFlags)
{
    struct Row
    {
        std::string sText;
        int iFlags;
        std::string sParts;
        unsigned int iCount;
        char cEscape = '\\';
    };
    Row const aRows[] = {{"a,b,,c", 0, "a|b||c", 4}, {"a,b,,c", 8, "a|b|c", 3}, {",", 0, "|", 2},
        {",", 8, "", 0}, {"a,", 4, "a|", 2}, {" a , b ", 0, " a | b ", 2}, {" a , b ", 1, "a |b ", 2},
        {" a , b ", 2, " a| b", 2}, {" , ", 3, "|", 2}, {" , ", 3 | 8, "", 0}, {"\\,b", 0, "\\,b", 1},
        {"a\\,b\\,c,d", 32, "a,b,c|d", 2},
        {"\\a,b\\\\,c", 32, "\\a|b,c", 2}, // a doubled escape escapes as well
        {"a\\ , b", 3 | 32, "a\\|b", 2},
        {"a,,,b", 32, "a|,b", 2, ','}, // the second and the third are escaped by those in front
        {"\"a,b\",c", 0, "\"a|b\"|c", 3}};
    for (auto const & [sText, iFlags, sParts, iCount, cEscape] : aRows)
    {
        std::vector<String> vParts = {"former"};
        EXPECT_EQ(Support::StringSplitter(sText, vParts, ',', iFlags, cEscape), iCount) << sText;
        EXPECT_EQ(Join(vParts), sParts) << sText;

        // It appends to what there is.
        vParts = {""};
        EXPECT_EQ(Splitter::Split(sText, vParts, ',', iFlags, cEscape), static_cast<int>(iCount) + 1)
            << sText;
        EXPECT_EQ(Join(vParts), (iCount > 0 ? "|" : "") + sParts) << sText;
    }

    std::vector<String> vParts = {"former"};
    EXPECT_EQ(Splitter::Split("", vParts, ',', ALL_FLAGS, '\\'), 0);
    EXPECT_EQ(Join(vParts), "former");
    EXPECT_EQ(Support::StringSplitter("", vParts, ',', 0, '\\'), 0u);
    EXPECT_TRUE(vParts.empty());
}

TEST(Splitting, ProtectsWhatStandsInQuotes)
{
    struct Row
    {
        std::string sText, sParts;
        unsigned int iCount;
        int iFlags = ALL_FLAGS;
    };
    Row const aRows[] = {{"a b  c", "a|b|c", 3}, {"\"a b\" c", "a b|c", 2}, {"a \"b c\"", "a|b c", 2},
        {"a\"b c\"d", "a|b c|d", 3}, {"a \"\" b", "a||b", 3}, {"\" a \"", " a ", 1}, {"\"a\"\"b\"", "a|b", 2},
        {"\"a\"   \"b\"", "a|b", 2}, {"\"", "", 1}, {"\"\"\"", "", 1}, {"a \"", "a", 1},
        {"a\"", "a|", 2},        // too short for an end
        {"a \"b c", "a|b c", 2}, // not closed
        {"\"a b", "a b", 1}, {"\"a\\\"b\" c", "a\"b|c", 2}, {"a\\\"b", "a\"b", 1},
        {"\"a\\\"", "a\"", 1}, // the last quote is escaped and closes nothing
        {"\"a\\ b\" c\\ d", "a\\ b|c d", 2}, {" ", "", 0},
        {"a  \"b\"  c", "a||b||c", 5, Support::eSplitQuotes}, // of two blanks one is left
        {"  \"b\"  ", "||b||", 5, Support::eSplitQuotes}};
    for (auto const & [sText, sParts, iCount, iFlags] : aRows)
    {
        std::vector<String> vParts = {"former"};
        EXPECT_EQ(Support::StringSplitter(sText, vParts, ' ', iFlags, '\\'), iCount) << sText;
        EXPECT_EQ(Join(vParts), sParts) << sText;
    }
}

TEST(Splitting, TakesATextThatIsOneOfTheParts)
{
    std::vector<String> vParts = {"a text that is too long to lie within, b"};
    EXPECT_EQ(Support::StringSplitter(vParts[0], vParts, ',', Support::eSplitTrimLeft, '\\'), 2U);
    EXPECT_EQ(Join(vParts), "a text that is too long to lie within|b");
    EXPECT_EQ(Splitter::Split(vParts[0], vParts, ' ', 0, '\\'), 11);
    EXPECT_EQ(vParts.back(), "within");
}

TEST(Splitting, IsQuickWithManyEscapes)
{
    std::string sText;
    for (int i = 0; i < 300'000; ++i)
        sText += "a\\ ";
    std::vector<String> vParts;
    EXPECT_EQ(Support::StringSplitter(sText, vParts, ' ', ALL_FLAGS, '\\'), 1U);
    EXPECT_EQ(vParts[0].GetLength(), 600'000U); // the last blank is trimmed, its escape stays
}

} // namespace
