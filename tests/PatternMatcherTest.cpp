#include "TestPrelude.h"

#include <patternmatcher/PatternMatcher.h>

#include <pthread.h>

using namespace tsltest;
using tsl::PatternMatcher;

namespace
{

std::string ShowSpan(std::size_t iBegin, std::size_t iEnd)
{
    return std::to_string(iBegin) + "," + std::to_string(iEnd);
}

/// All sub-matches as "begin,end", with "-" for those that took no part; "none" without a match.
std::string Show(PatternMatcher::Matches const & oMatches)
{
    std::string sResult = oMatches.GetCount() == 0 ? "none" : "";
    for (unsigned int i = 0; i < oMatches.GetCount(); ++i)
    {
        sResult += i == 0 ? "" : " ";
        bool const bTookPart = (oMatches.GetBegin(i) & oMatches.GetEnd(i)) != PatternMatcher::Matches::npos;
        sResult += bTookPart ? ShowSpan(oMatches.GetBegin(i), oMatches.GetEnd(i)) : "-";
    }
    return sResult;
}

std::string Search(
    std::string const & sPattern, std::string_view sText, int iFlags = 0, std::size_t iStart = 0)
{
    PatternMatcher const oMatcher(sPattern.c_str(), iFlags);
    PatternMatcher::Matches oMatches;
    oMatcher.Match(sText, iStart, oMatches);
    return Show(oMatches);
}

std::string Repeat(std::string const & sText, std::size_t iCount)
{
    std::string sResult;
    for (std::size_t i = 0; i < iCount; ++i)
        sResult += sText;
    return sResult;
}

struct Row
{
    std::string sPattern, sText, sExpected;
    int iFlags = 0;
    std::size_t iStart = 0;
};

void Check(std::vector<Row> const & vRows)
{
    for (auto const & [sPattern, sText, sExpected, iFlags, iStart] : vRows)
        EXPECT_EQ(Search(sPattern, sText, iFlags, iStart), sExpected)
            << sPattern << " with flags " << iFlags << " on " << sText << " from " << iStart;
}

constexpr char const * pFloat = R"(^[+-]?(\d*)(\.\d+|)((d|D|e|E)[+-]?(\d+)|))";

} // namespace

TEST(PatternMatcherSyntax, EachElementMatchesWhatItMeans)
{
    constexpr int iCase = PatternMatcher::eIgnoreCase;
    constexpr int iLines = PatternMatcher::eLineAnchors;
    Check({
        {"a.c", std::string("a\0c", 3), "0,3"},
        {R"(\\\^\$\*\{\}\[\]\(\)\|\-\_\ \.)", R"(\^$*{}[]()|-_ .)", "0,15"},
        {R"(\d+)", "ab/0189:", "3,7"},
        {R"(\D+)", "01a/b2", "2,5"},
        {R"(\w+)", "-[azAZ09_]`@", "2,9"},
        {R"(\W+)", "a_9 -{\xe4z", "3,7"},
        {R"(\s+)", "a \t\n\r\f\v\b", "1,7"},
        {R"(\S+)", " ab\x1f ", "1,4"},
        {R"(\t\n\r\f\a\e)", "\t\n\r\f\a\x1b", "0,6"},
        {R"(\x41\x7a\xFF\xfe)", "Az\xff\xfe", "0,4"},
        {"[]a]+", "b]a", "1,3"},
        {"[^]a]+", "]ab", "2,3"},
        {R"([\d.x-]+)", "a-1.5x", "1,6"},
        {R"([a-\d]+)", "ba-7b", "1,4"},
        {R"([\x41-\x43\]\\]+)", "aAB]\\C", "1,6"},
        {R"([\b])", "a\b", "1,2"},
        {"[.$(|[:a]+", "x.$(|[:ax", "1,8"},
        {R"([^\x00-\xff])", "abc", "none"},
        {"(a){0}b", "ab", "1,2 -"},
        {"^*a", "ba", "1,2"},
        {"a{,3}{x}{1,b", "a{,3}{x}{1,b", "0,12"},
        {"(a{1,3}?)(a{2,})", "aaaaa", "0,5 0,1 1,5"},
        {"(?:a{2}|b){0,2}?b", "xaabb", "1,4"},
        {"a$", "a\n\n", "none"},
        {"a$", "a\n", "0,1"},
        {R"(a\z)", "a\n", "none"},
        {R"(a\Z)", "a\n", "0,1"},
        {R"(\Aa)", "ba", "none"},
        {R"(\bb\w*\b)", "ab b_1-", "3,6"},
        {R"(a\B.)", "a- ab", "3,5"},
        {"aB[c-d]\\x45", "AbDe", "0,4", iCase},
        {"[@[{`]", "aZzA[", "4,5", iCase},
        {"\xe4", "\xc4", "none", iCase},
        {R"(\Ab|b\z)", "a\nb\nb", "4,5", iLines},
        {"^A.B$", "x\na\nb\n", "2,5", iCase | iLines | PatternMatcher::eDotMatchesLineEnd},
    });
}

TEST(PatternMatcherSyntax, BadPatternIsRefusedWithItsPlace)
{
    constexpr int iAny = -1;
    Rows<std::string, std::string, int> aRows = {
        {"a(b(c)", "missing )", 1},
        {"ab)c", "unmatched )", 2},
        {"[a-", "missing ]", 0},
        {"a[[:alpha:]]", "named classes", 2},
        {"*a", "nothing to repeat", 0},
        {"a{2}{3}", "nothing to repeat", 4},
        {"ab{3,2}", "runs backwards", 2},
        {"a{65536}", "above 65535", 1},
        {"ab\\", "backslash", 2},
        {R"(a\q)", "unknown escape", 1},
        {R"((a)\1)", "references", 3},
        {R"(a\x4)", "hexadecimal", 1},
        {"a(?=b)", "(?", 1},
        {Repeat("(", 1'001) + "a" + Repeat(")", 1'001), "nested too deeply", 1000},
        {Repeat("(", 1'000'000), "nested too deeply", 1000},
        {"(?:(?:(?:a?){65535}){65535}){65535}", "too large", iAny},
        {Repeat("(a?)", 158), "too many groups", 632},
        {"(?:a?){10000}b", "too large", iAny},
        {Repeat("(", 100) + "a?" + Repeat(")*", 100), "loops are nested", 302},
    };
    for (auto const & [sPattern, sReason, iPlace] : aRows)
        try
        {
            PatternMatcher const oMatcher(sPattern.c_str(), 0);
            ADD_FAILURE() << sPattern << " is accepted";
        }
        catch (std::invalid_argument const & oFailure)
        {
            std::string const sPlace = std::to_string(iPlace) + " of the pattern \"" + sPattern;
            EXPECT_TRUE(Contains(oFailure.what(), sReason));
            EXPECT_TRUE(Contains(oFailure.what(), "at position " + (iPlace == iAny ? "" : sPlace)));
        }
    EXPECT_THROW(PatternMatcher(nullptr, 0), std::invalid_argument);
    EXPECT_THROW(PatternMatcher("a", 8), std::invalid_argument);
}

TEST(PatternMatcherPriority, FirstBranchAndNearestStartWin)
{
    Check({
        {"(a|ab)(c|bcd)(d*)", "abcd", "0,4 0,1 1,4 4,4"},
        {"(|a)+$", "aa", "0,2 2,2"},
        // Greedy, but further than the place where the assertion holds.
        {R"(^-(?:\Ba|))", "-a", "0,1"},
        {R"(^[a-]*\b)", "a--", "0,1"},
        // A repeated group gives its last turn, and keeps it when a later turn goes another way.
        {"(?:(a)|(b)|c)*", "abc", "0,3 0,1 1,2"},
        // From the middle the search still sees what is in front.
        {"^b", "ab", "none", 0, 1},
        {R"(\bb)", "ab b", "3,4", 0, 1},
        {"", "ab", "none", 0, 3},
        {"a", "a", "none", 0, SIZE_MAX},
        {pFloat, "-12.375e-3", "0,10 1,3 3,7 7,10 7,8 9,10"},
    });
}

TEST(PatternMatcherResult, SubstrGivesTheGroupsOfTheLastMatch)
{
    PatternMatcher const oMatcher("(a+)(x)?(b)", 0);
    auto const fGetGroups = [&](std::string const & s)
    { return oMatcher.substr(s, 0) + '/' + oMatcher.substr(s, 1) + '/' + oMatcher.substr(s, UINT_MAX); };
    EXPECT_EQ(fGetGroups("--aab"), "//");
    EXPECT_EQ(oMatcher.Match("--aab", 0), 4u);
    EXPECT_EQ(fGetGroups("--aab"), "aab/aa/");
    EXPECT_EQ(fGetGroups("--a"), "a/a/") << "a shorter text than the one that was searched";
    EXPECT_EQ(fGetGroups("-"), "//");
    EXPECT_EQ(oMatcher.Match("ac", 0), 0u);
    EXPECT_EQ(fGetGroups("--aab"), "//");
}

TEST(PatternMatcherLimits, NoPatternBlowsUp)
{
    std::string const sText = std::string(40'000, 'a') + "!";
    for (char const * const pPattern :
        {"(a*)*b", "(a+)+$b", "(a|aa)+$", "(?:a?){50}a{50}b", "((a*)*)*b", "(.*)(.*)(.*)(.*)b", "^(a+)+$",
            "(x+x+)+y", "^a(?:|){60}[^\\x00-\\xff]", "(?:a*?)*?b", "([a-z]+)*[0-9]"})
        Check({{pPattern, sText, "none"}, {pPattern, sText.substr(39'950), "none"}});
}

TEST(PatternMatcherLimits, RunsOfAnyLengthEndWhereTheirBytesEnd)
{
    struct RunRow
    {
        char const * pPattern;
        std::string sInside; // The first and last bytes of its intervals.
        std::string sBehind;
    };
    RunRow const vRows[] = {{"^\\d*", "09", "/:a"}, {"^\\w*", "09AZ_az", "/@`{"}, {"^[^x]*", "\n y\xFF", "x"},
        {"^[\\x80-\\xFF]*", "\x80\xFF", "\x7F\n"}, {"^[\\x00-\\xFF]*", std::string("\0\xFF", 2), ""}};
    for (auto const & [pPattern, sInside, sBehind] : vRows)
        for (std::size_t iLength = 0; iLength < 100; ++iLength)
        {
            std::string sText;
            for (std::size_t i = 0; i < iLength; ++i)
                sText += sInside[i % sInside.size()];
            std::string const sExpected = "0," + std::to_string(iLength);
            Check({{pPattern, sText, sExpected}});
            for (char const cBehind : sBehind)
                Check({{pPattern, sText + cBehind + sText, sExpected}});
        }
}

TEST(PatternMatcherLimits, LongTextsAndHugePatternsNeedLittleStack)
{
    auto const fMain = [](void *) -> void *
    {
        Check({
            {pFloat, std::string(1'000'000, '7'), "0,1000000 0,1000000 1000000,1000000 1000000,1000000 - -"},
            {"(a+)(b?)$", std::string(2'000'000, 'a'), "0,2000000 0,2000000 2000000,2000000"},
            {Repeat("(?:", 1'000) + "a" + Repeat(")?", 1'000), "aa", "0,1"},
            {Repeat("(?:a?", 1'000) + Repeat(")?", 1'000), std::string(1'000, 'a'), "0,1000"},
            {"^a{19990}", std::string(19'990, 'a'), "0,19990"},
            {"(?:(?:(?:){65535}){65535}){65535}b", "b", "0,1"},
        });
        EXPECT_EQ(Search(Repeat("(", 1'000) + "a" + Repeat(")", 1'000), "ba").substr(0, 8), "1,2 1,2 ");
        return nullptr;
    };
    pthread_attr_t oAttributes;
    pthread_attr_init(&oAttributes);
    ASSERT_EQ(pthread_attr_setstacksize(&oAttributes, 65'536), 0);
    pthread_t oThread;
    ASSERT_EQ(pthread_create(&oThread, &oAttributes, fMain, nullptr), 0);
    pthread_join(oThread, nullptr);
}

TEST(PatternMatcherThreads, OneMatcherServesSeveralThreads)
{
    PatternMatcher const oWords(R"((\w+)=(\w*))", 0);
    std::string const aTexts[] = {Repeat("- ", 20'000) + "key=value", "key=value"};
    RunOnThreads(4,
        [&](int)
        {
            PatternMatcher::Matches oMatches;
            for (std::size_t i = 0; i < 50; ++i)
            {
                oWords.Match(aTexts[i % 2], 0, oMatches);
                EXPECT_EQ(oMatches.GetText(aTexts[i % 2], 2), "value");
            }
        });
}

/// A random pattern whose branches are all in groups.
static std::string MakePattern(std::mt19937 & oRandom, int iDepth)
{
    static char const * const vLeaves[] = {
        "a", "b", "a", "b", ".", "[ab]", "[^a]", "", "^", "$", "\\b", "\\B"};
    static char const * const vCounts[] = {"*", "+", "?", "{2}", "{0,2}", "{1,3}", "{2,}"};
    std::size_t const iKind = iDepth == 0 ? 0 : oRandom() % 5;
    if (iKind == 0)
        return vLeaves[oRandom() % std::size(vLeaves)];
    std::string const sLeft = MakePattern(oRandom, iDepth - 1);
    if (iKind == 1)
        return "(" + sLeft + ")";
    if (iKind == 2)
        return "(?:" + sLeft + ")" + vCounts[oRandom() % std::size(vCounts)] + (oRandom() % 3 ? "" : "?");
    std::string const sRight = MakePattern(oRandom, iDepth - 1);
    return iKind == 3 ? sLeft + sRight : "(?:" + sLeft + "|" + sRight + ")";
}

TEST(PatternMatcherRandom, AllWaysOfSearchingAgree)
{
    // A branch that never matches, but makes the program so big that no text is short for it.
    std::string const sBig = "|\\x02(?:|){9000}";
    std::mt19937 oRandom(20'240'229);
    int iFound = 0;
    for (int i = 0; i < 200; ++i)
    {
        int const iFlags = static_cast<int>(oRandom() % 8);
        // One in four is anchored: those may be executed in a third way.
        std::string const sPattern = (oRandom() % 4 ? "" : "^") + MakePattern(oRandom, 4);
        PatternMatcher const oLongWay((sPattern + sBig).c_str(), iFlags);
        PatternMatcher::Matches oMatches;
        for (int j = 0; j < 6; ++j)
        {
            std::string sText;
            for (std::size_t k = oRandom() % 7; k > 0; --k)
                sText += "aabbA\n"[oRandom() % 6];
            std::size_t const iStart = oRandom() % 3 == 0 ? oRandom() % (sText.size() + 1) : 0;
            oLongWay.Match(sText, iStart, oMatches);
            Check({{sPattern, sText, Show(oMatches), iFlags, iStart}});
            iFound += oMatches.GetCount() > 0;
        }
    }
    EXPECT_GT(iFound, 400);
}
