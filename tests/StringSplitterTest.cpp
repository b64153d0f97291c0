#include "TestPrelude.h"

using namespace tsl;

namespace
{

/// The inner splitting is for derived classes.
class Splitter : public Support
{
public:
    using Support::Split;
};

std::string Show(std::vector<String> const & vParts)
{
    std::string sShown;
    for (String const & sPart : vParts)
        sShown += '<' + sPart.s_str() + '>';
    return sShown;
}

constexpr int ALL_FLAGS = 59;

TEST(Splitting, FollowsItsFlagsAndProtectsWhatStandsInQuotes)
{
    struct Row
    {
        std::string sText, sParts;
        char cSeparator = ' ';
        int iFlags = ALL_FLAGS;
        char cEscape = '\\';
    };
    Row const aRows[] = {
        {"", ""}, {"a,b,,c", "<a><b><c>", ',', 8}, {"a,", "<a><>", ',', 4}, {" a , b ", "< a>< b>", ',', 2},
        {"\"a,b\",c", "<\"a><b\"><c>", ',', 0}, {"\\,b", "<\\,b>", ',', 0},
        {"a\\,b\\,c,d", "<a,b,c><d>", ',', 32},
        {"\\a,b\\\\,c", "<\\a><b,c>", ',', 32}, // a doubled escape escapes as well
        {"a\\ , b", "<a\\><b>", ',', 3 | 32},
        {"a,,,b", "<a><,b>", ',', 32, ','}, // the second and the third are escaped by those in front
        {"a\"b c\"d", "<a><b c><d>"}, {"a \"\" b", "<a><><b>"}, {"\"", "<>"},
        {"a \"b c", "<a><b c>"},                             // not closed
        {"\"a\\\"b\" c", "<a\"b><c>"}, {"\"a\\\"", "<a\">"}, // the last quote is escaped and closes nothing
        {"\"a\\ b\" c\\ d", "<a\\ b><c d>"},
        {"a  \"b\"  c", "<a><><b><><c>", ' ', 16}, // of two blanks one is left
    };
    for (auto const & [sText, sParts, cSeparator, iFlags, cEscape] : aRows)
    {
        SCOPED_TRACE(sText);
        std::vector<String> vParts = {"former"};
        unsigned int const iParts = Support::StringSplitter(sText, vParts, cSeparator, iFlags, cEscape);
        EXPECT_EQ(iParts, vParts.size());
        EXPECT_EQ(Show(vParts), sParts);
    }

    std::vector<String> vParts = {"former"};
    EXPECT_EQ(Splitter::Split("a,b", vParts, ',', 0, '\\'), 3);
    EXPECT_EQ(Splitter::Split("", vParts, ',', ALL_FLAGS, '\\'), 0);
    EXPECT_EQ(Show(vParts), "<former><a><b>");
}

TEST(Splitting, TakesATextThatIsOneOfTheParts)
{
    std::vector<String> vParts = {"a text that is too long to lie within, b"};
    EXPECT_EQ(Support::StringSplitter(vParts[0], vParts, ',', Support::eSplitTrimLeft, '\\'), 2U);
    EXPECT_EQ(Show(vParts), "<a text that is too long to lie within><b>");
    EXPECT_EQ(Splitter::Split(vParts[0], vParts, ' ', 0, '\\'), 11);
    EXPECT_EQ(vParts.back(), "within");
}

} // namespace
