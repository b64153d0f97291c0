#include "ProcessTest.h"

#include <patternmatcher/PatternMatcher.h>

#include <atomic>
#include <climits>
#include <functional>
#include <gtest/gtest.h>
#include <numeric>
#include <pthread.h>
#include <random>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

using tsl::PatternMatcher;

// ---------------------------------------------------------------------------------------------------------
// Helpers

namespace
{

/// All sub-matches as "begin,end", with "-" for those that took no part; "none" without a match.
std::string Show(PatternMatcher::Matches const & oMatches)
{
    std::string sResult = oMatches.GetCount() == 0 ? "none" : "";
    for (unsigned int i = 0; i < oMatches.GetCount(); ++i)
    {
        sResult += i == 0 ? "" : " ";
        if (oMatches.GetBegin(i) == PatternMatcher::Matches::npos
            && oMatches.GetEnd(i) == PatternMatcher::Matches::npos)
            sResult += "-";
        else
            sResult += std::to_string(oMatches.GetBegin(i)) + "," + std::to_string(oMatches.GetEnd(i));
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

/// What the constructor throws, or "accepted".
std::string Refusal(std::string const & sPattern)
{
    try
    {
        PatternMatcher const oMatcher(sPattern.c_str(), 0);
        return "accepted";
    }
    catch (std::invalid_argument const & oFailure)
    {
        return oFailure.what();
    }
}

constexpr char const * pFloat = R"(^[+-]?(\d*)(\.\d+|)((d|D|e|E)[+-]?(\d+)|))";

} // namespace

// ---------------------------------------------------------------------------------------------------------
// Syntax

TEST(PatternMatcherSyntax, EachElementMatchesWhatItStandsFor)
{
    struct Row
    {
        char const * pPattern;
        std::string sText;
        char const * pExpected;
    };
    Row const vRows[] = {
        {"", "abc", "0,0"},
        {"bc", "abcbc", "1,3"},
        {"a.c", "a\nc abc", "4,7"},
        {"a.c", std::string("a\0c", 3), "0,3"},
        {R"(a\.c)", "abc a.c", "4,7"},
        {R"(\\\^\$\*\{\}\[\]\(\)\|\-\_\ )", R"(\^$*{}[]()|-_ )", "0,14"},
        // escapes
        {R"(\d+)", "ab/0189:", "3,7"},
        {R"(\D+)", "01a/b2", "2,5"},
        {R"(\w+)", "-[azAZ09_]`@", "2,9"},
        {R"(\W+)", "a_9 -{\xe4z", "3,7"},
        {R"(\s+)", "a \t\n\r\f\v\b", "1,7"},
        {R"(\S+)", " ab\x1f ", "1,4"},
        {R"(\t\n\r\f\a\e)", "\t\n\r\f\a\x1b", "0,6"},
        {R"(\x41\x7a\xFF\xfe)", "Az\xff\xfe", "0,4"},
        {R"(\x00)", std::string("a\0", 2), "1,2"},
        // classes
        {"[bc]+", "abcd", "1,3"},
        {"[^bc]+", "cb\nax", "2,5"},
        {"[b-d-]+", "ab-de", "1,4"},
        {"[-b]+", "ab-c", "1,3"},
        {"[]a]+", "b]a", "1,3"},
        {"[^]a]+", "]ab", "2,3"},
        {"[a^]+", "b^a", "1,3"},
        {R"([\d.x-]+)", "a-1.5x", "1,6"},
        {R"([\d-z]+)", "y3-z", "1,4"},
        {R"([a-\d]+)", "ba-7b", "1,4"},
        {R"([^\d\s]+)", "1 ab 2", "2,4"},
        {R"([\x41-\x43\]\\]+)", "aAB]\\C", "1,6"},
        {R"([\b])", "a\b", "1,2"},
        {"[.$(|]+", "a.$(|b", "1,5"},
        {"[[:a]+", ":[ab", "0,3"},
        {"[\x80-\xff]+", "a\x80\xc3\xff", "1,4"},
        {R"([^\x00-\xff])", "abc", "none"},
        // groups and branches
        {"(a)(?:b)(c)", "abc", "0,3 0,1 2,3"},
        {"((a)(b))c", "abc", "0,3 0,2 0,1 1,2"},
        {"a|b", "cb", "1,2"},
        {"(a|)b|", "b", "0,1 0,0"},
        {"(|a)b", "ab", "0,2 0,1"},
        {"x(?:|)y", "xy", "0,2"},
        {"()", "a", "0,0 0,0"},
        {"(a)|(b)", "b", "0,1 - 0,1"},
        // repetitions
        {"a*", "aab", "0,2"},
        {"ba+", "bb baa", "3,6"},
        {"colou?r", "color", "0,5"},
        {"a{2}", "a aaa", "2,4"},
        {"a{2,}", "a aaaa", "2,6"},
        {"a{2,3}", "aaaa", "0,3"},
        {"a{0}b", "ab", "1,2"},
        {"(a){0}b", "ab", "1,2 -"},
        {"(?:ab){2,3}c", "abababc", "0,7"},
        {"a*?b", "aab", "0,3"},
        {"a+?", "aaa", "0,1"},
        {"a??", "a", "0,0"},
        {"a{2,3}?", "aaa", "0,2"},
        {"a{2,}?b", "aaab", "0,4"},
        {"^*a", "ba", "1,2"},
        {"a{,3}", "a{,3}", "0,5"},
        {"a{x}{1,b", "a{x}{1,b", "0,8"},
        {"{}", "{}", "0,2"},
        {"a]}", "a]}", "0,3"},
        // places
        {"^b", "ab\nb", "none"},
        {"^a|^b", "bab", "0,1"},
        {"a$", "a\na\n", "2,3"},
        {"a$", "a\n\n", "none"},
        {"$", "ab\n", "2,2"},
        {R"(a\z)", "a\n", "none"},
        {R"(a\Z)", "a\n", "0,1"},
        {R"(\Aa)", "ba", "none"},
        {R"(\bb\w*\b)", "ab b_1-", "3,6"},
        {R"(\Bb)", "b ab", "3,4"},
        {R"(\b)", "", "none"},
        {R"(\B)", "", "0,0"},
        {"a^b|b$c", "abc", "none"},
    };
    for (Row const & oRow : vRows)
        EXPECT_EQ(Search(oRow.pPattern, oRow.sText), oRow.pExpected) << oRow.pPattern << " on " << oRow.sText;
}

TEST(PatternMatcherSyntax, FlagsChangeCaseLinesAndDot)
{
    constexpr int iCase = PatternMatcher::eIgnoreCase;
    constexpr int iLines = PatternMatcher::eLineAnchors;
    constexpr int iDot = PatternMatcher::eDotMatchesLineEnd;
    struct Row
    {
        char const * pPattern;
        int iFlags;
        char const * pText;
        char const * pExpected;
    };
    Row const vRows[] = {
        {"aB[c-d]\\x45", iCase, "AbDe", "0,4"},
        {"[^a]", iCase, "Aab", "2,3"},
        {"[@[{`]", iCase, "aZzA[", "4,5"},
        {"\xe4", iCase, "\xc4", "none"},
        {"^b", iLines, "ab\nb", "3,4"},
        {"a$", iLines, "ab\na\nb", "3,4"},
        {"^$", iLines, "\n", "0,0"},
        {"b\n^", iLines, "ab\n", "none"},
        {"b$\n$", iLines, "ab\n", "1,3"},
        {R"(\Ab|b\z)", iLines, "a\nb\nb", "4,5"},
        {"a.b", iDot, "a\nb", "0,3"},
        {"^A.B$", iCase | iLines | iDot, "x\na\nb\n", "2,5"},
    };
    for (Row const & oRow : vRows)
        EXPECT_EQ(Search(oRow.pPattern, oRow.pText, oRow.iFlags), oRow.pExpected) << oRow.pPattern;
    EXPECT_THROW(PatternMatcher("a", 8), std::invalid_argument);
    EXPECT_THROW(PatternMatcher("a", -1), std::invalid_argument);
}

TEST(PatternMatcherSyntax, BadPatternIsRefusedWithItsPlace)
{
    struct Row
    {
        char const * pPattern;
        char const * pReason;
        int iPlace;
    };
    Row const vRows[] = {
        {"a(b(c)", "missing )", 1},
        {"ab)c", "unmatched )", 2},
        {"a[b", "missing ]", 1},
        {"[]", "missing ]", 0},
        {"[a-", "missing ]", 0},
        {"a[z-b]", "runs backwards", 2},
        {"a[[:alpha:]]", "named classes", 2},
        {"*a", "nothing to repeat", 0},
        {"a|+", "nothing to repeat", 2},
        {"(?:{2})", "nothing to repeat", 3},
        {"a**", "nothing to repeat", 2},
        {"a{2}{3}", "nothing to repeat", 4},
        {"a++", "nothing to repeat", 2},
        {"ab{3,2}", "runs backwards", 2},
        {"a{65536}", "above 65535", 1},
        {"a{1,99999999999999999999999}", "above 65535", 1},
        {"ab\\", "backslash", 2},
        {R"(a\q)", "unknown escape", 1},
        {R"((a)\1)", "references", 3},
        {R"(a\x4)", "hexadecimal", 1},
        {R"([\xg1])", "hexadecimal", 1},
        {"a(?=b)", "(?", 1},
        {"(?i)a", "(?", 0},
    };
    for (Row const & oRow : vRows)
    {
        std::string const sFailure = Refusal(oRow.pPattern);
        EXPECT_NE(sFailure.find(oRow.pReason), sFailure.npos) << sFailure;
        std::string const sEnd =
            "at position " + std::to_string(oRow.iPlace) + " of the pattern \"" + oRow.pPattern + "\"";
        EXPECT_NE(sFailure.find(sEnd), sFailure.npos) << sFailure << " lacks " << sEnd;
    }
    EXPECT_THROW(PatternMatcher(nullptr, 0), std::invalid_argument);
}

// ---------------------------------------------------------------------------------------------------------
// Which match, and which groups

TEST(PatternMatcherPriority, FirstBranchAndNearestStartWin)
{
    struct Row
    {
        char const * pPattern;
        char const * pText;
        char const * pExpected;
    };
    Row const vRows[] = {
        {"b|abc|ab", "xabc", "1,4"},
        {"a|ab", "ab", "0,1"},
        {"(a|ab)(c|bcd)(d*)", "abcd", "0,4 0,1 1,4 4,4"},
        {"(a+)(a*)", "aaa", "0,3 0,3 3,3"},
        {"(a+?)(a*)", "aaa", "0,3 0,1 1,3"},
        {"(a*)(ab)*(b*)", "abb", "0,3 0,1 - 1,3"},
        {"(.*)(\\d+)", "a123", "0,4 0,3 3,4"},
        {"(.*?)(\\d+)", "a123", "0,4 0,1 1,4"},
        // Greedy, but further than the place where the assertion holds.
        {R"(^-(?:\Ba|))", "-a", "0,1"},
        {R"(^[a-]*\b)", "a--", "0,1"},
        // A repeated group gives its last turn, and keeps it when a later turn goes another way.
        {"(?:(a)|(b)|c)*", "abc", "0,3 0,1 1,2"},
        {"(a|ab)*c", "aabc", "0,4 1,3"},
        {"(a?){3}", "aa", "0,2 2,2"},
        {"(?:(a)b|ac)+", "abac", "0,4 0,1"},
        // Turns that match nothing.
        {"(a*)*", "b", "0,0 0,0"},
        {"(a*)*", "aab", "0,2 2,2"},
        {"(a*)+", "aab", "0,2 2,2"},
        {"(a*)*?b", "aab", "0,3 0,2"},
        {"(|a)+", "aaa", "0,0 0,0"},
        {"(|a)+$", "aa", "0,2 2,2"},
        {"(a|b?)*", "abac", "0,3 3,3"},
        {"(a|b?)*c", "abc", "0,3 2,2"},
        {"((a*)*)*", "aab", "0,2 2,2 2,2"},
        {"(?:(a*)|b)*c", "aabc", "0,4 3,3"},
        {"(?:a?|(b))*c", "abac", "0,4 1,2"},
        {"(|a){0,2}b", "ab", "0,2 1,1"},
        {"(^|a|b)*c", "abc", "0,3 1,2"},
        {"(?:()|a)*b", "aab", "0,3 2,2"},
    };
    for (Row const & oRow : vRows)
        EXPECT_EQ(Search(oRow.pPattern, oRow.pText), oRow.pExpected) << oRow.pPattern << " on " << oRow.pText;
}

TEST(PatternMatcherPriority, SearchFromTheMiddleStillSeesWhatStandsInFront)
{
    EXPECT_EQ(Search("a", "aba", 0, 1), "2,3");
    EXPECT_EQ(Search("^b", "ab", 0, 1), "none");
    EXPECT_EQ(Search("^b", "a\nb", PatternMatcher::eLineAnchors, 2), "2,3");
    EXPECT_EQ(Search(R"(\bb)", "ab b", 0, 1), "3,4");
    EXPECT_EQ(Search("b*", "ab", 0, 2), "2,2");
    EXPECT_EQ(Search("", "ab", 0, 3), "none");
    EXPECT_EQ(Search("a", "a", 0, SIZE_MAX), "none");
}

TEST(PatternMatcherPriority, FloatPatternFindsTheNumberAtTheFront)
{
    struct Row
    {
        char const * pText;
        char const * pExpected;
    };
    Row const vRows[] = {
        {"1.5", "0,3 0,1 1,3 3,3 - -"},
        {".5", "0,2 0,0 0,2 2,2 - -"},
        {"5.", "0,1 0,1 1,1 1,1 - -"},
        {"1e", "0,1 0,1 1,1 1,1 - -"},
        {"1e+x", "0,1 0,1 1,1 1,1 - -"},
        {"1D3x", "0,3 0,1 1,1 1,3 1,2 2,3"},
        {"-12.375e-3", "0,10 1,3 3,7 7,10 7,8 9,10"},
        {"-", "0,1 1,1 1,1 1,1 - -"},
        {"+e5", "0,3 1,1 1,1 1,3 1,2 2,3"},
        {"abc", "0,0 0,0 0,0 0,0 - -"},
        {"", "0,0 0,0 0,0 0,0 - -"},
        {" 1", "0,0 0,0 0,0 0,0 - -"},
    };
    for (Row const & oRow : vRows)
        EXPECT_EQ(Search(pFloat, oRow.pText), oRow.pExpected) << oRow.pText;
}

// ---------------------------------------------------------------------------------------------------------
// Results

TEST(PatternMatcherResult, SubstrGivesTheGroupsOfTheLastMatch)
{
    PatternMatcher const oMatcher("(a+)(x)?(b)", 0);
    std::string const sText = "--aab";
    EXPECT_EQ(oMatcher.substr(sText, 0), "");
    EXPECT_EQ(oMatcher.Match(sText, 0), 4u);
    EXPECT_EQ(oMatcher.substr(sText, 0), "aab");
    EXPECT_EQ(oMatcher.substr(sText, 1), "aa");
    EXPECT_EQ(oMatcher.substr(sText, 2), "");
    EXPECT_EQ(oMatcher.substr(sText, 3), "b");
    EXPECT_EQ(oMatcher.substr(sText, 4), "");
    EXPECT_EQ(oMatcher.substr(sText, UINT_MAX), "");

    // A shorter text than the one that was searched.
    EXPECT_EQ(oMatcher.substr("--a", 0), "a");
    EXPECT_EQ(oMatcher.substr("-", 0), "");

    EXPECT_EQ(oMatcher.Match(sText, 3), 4u);
    EXPECT_EQ(oMatcher.substr(sText, 1), "a");
    EXPECT_EQ(oMatcher.Match("ac", 0), 0u);
    EXPECT_EQ(oMatcher.substr(sText, 0), "");
}

TEST(PatternMatcherResult, MatchesServesAnyMatcherAndText)
{
    PatternMatcher const oFloat(pFloat, 0);
    PatternMatcher const oWords(R"((\w+)-(\w+))", 0);
    std::string const sLong = Repeat("a ", 100'000) + "ab-cd";
    PatternMatcher::Matches oMatches;
    EXPECT_EQ(oMatches.GetCount(), 0u);
    EXPECT_EQ(oFloat.Match(std::string_view("1.5"), 0, oMatches), 6u);
    EXPECT_EQ(oMatches.GetCount(), 6u);
    EXPECT_EQ(oWords.Match(sLong, 0, oMatches), 3u);
    EXPECT_EQ(oMatches.GetText(sLong, 2), "cd");
    EXPECT_EQ(oWords.Match(std::string_view("ab-cd"), 0, oMatches), 3u);
    EXPECT_EQ(oMatches.GetText("ab-cd", 1), "ab");
    EXPECT_EQ(oMatches.GetEnd(3), PatternMatcher::Matches::npos);
    EXPECT_EQ(oWords.Match(std::string_view("-"), 0, oMatches), 0u);
    EXPECT_EQ(oMatches.GetText("-", 0), "");
}

TEST(PatternMatcherResult, SearchesStopAllocating)
{
    tsltest::ProgramOutcome const oOutcome = tsltest::TestProgram("PatternMatcherAllocations").Run();
    EXPECT_EQ(oOutcome.sOutput, "found with memory\nfound without memory\n") << oOutcome.sErrors;
}

// ---------------------------------------------------------------------------------------------------------
// Hostile patterns and texts

TEST(PatternMatcherLimits, HugePatternsAreRefusedOrWork)
{
    std::string const sNested = Repeat("(", 1'000) + "a" + Repeat(")", 1'000);
    EXPECT_EQ(Search(sNested, "ba").substr(0, 8), "1,2 1,2 ");
    EXPECT_EQ(Search("^a{65535}", std::string(65'535, 'a')), "0,65535");
    EXPECT_EQ(Search("(?:){65535}b", "b"), "0,1");
    EXPECT_EQ(Search(Repeat("(?:a?", 1'000) + Repeat(")?", 1'000), std::string(1'000, 'a')), "0,1000");
    EXPECT_EQ(Search("(?:(?:(?:){65535}){65535}){65535}b", "b"), "0,1");

    struct Row
    {
        std::string sPattern;
        char const * pReason;
    };
    Row const vRows[] = {
        {"(" + sNested + ")", "nested too deeply"},
        {"a{1000000}", "above 65535"},
        {"(?:a{1000}){1000}", "too large"},
        {"(?:(?:(?:a?){65535}){65535}){65535}", "too large"},
        {std::string(1'000'000, 'a'), "too large"},
        {Repeat("(", 1'000) + "a?" + Repeat(")*", 1'000), "loops are nested"},
        {Repeat("(a)", 10'000), "too many groups"},
        {Repeat("(", 1'000'000), "nested too deeply"},
        {std::string(1'000'000, '['), "missing ]"},
    };
    for (Row const & oRow : vRows)
    {
        std::string const sFailure = Refusal(oRow.sPattern);
        EXPECT_NE(sFailure.find(oRow.pReason), sFailure.npos) << sFailure.substr(0, 100);
    }
}

TEST(PatternMatcherLimits, NoPatternBlowsUp)
{
    std::string const sText = std::string(100'000, 'a') + "!";
    for (char const * const pPattern :
        {"(a*)*b", "(a+)+$b", "(a|a)*b", "(a|aa)+$", "(?:a?){50}a{50}b", "((a*)*)*b", "(.*)(.*)(.*)(.*)b",
            "^(a+)+$", "(x+x+)+y", "^a(?:|){60}[^\\x00-\\xff]", "(?:a*?)*?b", "([a-z]+)*[0-9]"})
    {
        EXPECT_EQ(Search(pPattern, sText), "none") << pPattern;
        EXPECT_EQ(Search(pPattern, sText.substr(99'950)), "none") << pPattern;
    }
}

/// Runs the function on a thread whose stack has 64 KiB.
static void RunOnSmallStack(std::function<void()> fRun)
{
    pthread_attr_t oAttributes;
    ASSERT_EQ(pthread_attr_init(&oAttributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&oAttributes, 65'536), 0);
    auto const fMain = [](void * p) -> void *
    {
        (*static_cast<std::function<void()> *>(p))();
        return nullptr;
    };
    pthread_t oThread;
    ASSERT_EQ(pthread_create(&oThread, &oAttributes, fMain, &fRun), 0);
    pthread_join(oThread, nullptr);
    pthread_attr_destroy(&oAttributes);
}

TEST(PatternMatcherLimits, LongTextsAndDeepPatternsNeedLittleStack)
{
    std::string const sDigits(1'000'000, '7');
    std::string const sLong(2'000'000, 'a');
    std::string const sDeep = Repeat("(", 1'000) + "a" + Repeat(")?", 1'000);
    std::string sFloat, sGroups, sNested;
    RunOnSmallStack(
        [&]
        {
            sFloat = Search(pFloat, sDigits);
            sGroups = Search("(a+)(b?)$", sLong);
            sNested = Search(sDeep, "aa");
        });
    EXPECT_EQ(sFloat, "0,1000000 0,1000000 1000000,1000000 1000000,1000000 - -");
    EXPECT_EQ(sGroups, "0,2000000 0,2000000 2000000,2000000");
    EXPECT_EQ(sNested.substr(0, 8), "0,1 0,1 ");
}

TEST(PatternMatcherThreads, OneMatcherServesSeveralThreads)
{
    PatternMatcher const oFloat(pFloat, 0);
    PatternMatcher const oWords(R"((\w+)=(\w*))", 0);
    std::string const sLong = Repeat("- ", 20'000) + "key=value";
    std::atomic<int> iFailures = 0;
    auto const fSearch = [&]
    {
        PatternMatcher::Matches oMatches;
        for (int i = 0; i < 50; ++i)
        {
            std::string const sNumber = std::to_string(i) + ".25e1x";
            oFloat.Match(sNumber, 0, oMatches);
            iFailures += oMatches.GetText(sNumber, 0) != sNumber.substr(0, sNumber.size() - 1);
            oWords.Match(sNumber + " k=" + sNumber, 0, oMatches);
            iFailures += oMatches.GetEnd(2) - oMatches.GetBegin(2) != std::to_string(i).size();
            oWords.Match(sLong, 0, oMatches);
            iFailures += oMatches.GetText(sLong, 2) != "value";
        }
    };
    std::vector<std::thread> vThreads;
    for (int i = 0; i < 4; ++i)
        vThreads.emplace_back(fSearch);
    for (std::thread & oThread : vThreads)
        oThread.join();
    EXPECT_EQ(iFailures, 0);
}

// ---------------------------------------------------------------------------------------------------------
// Against a matcher that is slow and obvious

namespace
{

/// A random pattern, which is built together with a matcher that tries everything in order.
class RandomPattern
{
public:
    /// One in four is anchored: those may be executed in a way of their own.
    RandomPattern(std::mt19937 & oRandom, int iFlags) : m_oRandom(oRandom), m_iFlags(iFlags)
    {
        m_oWhole = Grow(4);
        if (Choose(4) == 0)
            m_oWhole = InSequence(MakeLeaf("^"), m_oWhole);
    }

    std::string const & GetText() const { return m_oWhole.sText; }

    /// As Show. Empty if it would take too long.
    std::string Search(std::string const & sText, std::size_t iStart)
    {
        m_sText = sText;
        m_iSteps = 0;
        for (; iStart <= sText.size(); ++iStart)
        {
            m_vGroups.assign(m_iGroups, "-");
            std::size_t iEnd = 0;
            bool const bFound = m_oWhole.fMatch(iStart, [&](std::size_t i) { return iEnd = i, true; });
            if (m_iSteps > iMaxSteps)
                return "";
            if (bFound)
                return std::accumulate(m_vGroups.begin(), m_vGroups.end(), ShowSpan(iStart, iEnd),
                    [](std::string const & sLeft, std::string const & s) { return sLeft + " " + s; });
        }
        return "none";
    }

private:
    /// What is to match behind a piece; false makes the piece try its next way.
    using Next = std::function<bool(std::size_t)>;

    struct Piece
    {
        std::string sText;
        std::function<bool(std::size_t, Next const &)> fMatch;
    };

    struct Count
    {
        char const * pText;
        std::size_t iMin;
        std::size_t iMax;
    };

    static constexpr int iMaxSteps = 100'000;

    std::size_t Choose(std::size_t iCount) { return m_oRandom() % iCount; }

    static std::string ShowSpan(std::size_t iBegin, std::size_t iEnd)
    {
        return std::to_string(iBegin) + "," + std::to_string(iEnd);
    }

    Piece Grow(int iDepth)
    {
        static char const * const vLeaves[] = {
            "a", "b", "a", "b", ".", "[ab]", "[^a]", "", "^", "$", "\\b", "\\B"};
        static Count const vCounts[] = {{"*", 0, SIZE_MAX}, {"+", 1, SIZE_MAX}, {"?", 0, 1}, {"{2}", 2, 2},
            {"{0,2}", 0, 2}, {"{1,3}", 1, 3}, {"{2,}", 2, SIZE_MAX}};

        std::size_t const iKind = iDepth == 0 ? 0 : Choose(5);
        if (iKind == 0)
            return MakeLeaf(vLeaves[Choose(std::size(vLeaves))]);
        if (iKind == 1)
            return InGroup(iDepth, m_iGroups++);
        Piece const oLeft = Grow(iDepth - 1);
        if (iKind == 2)
            return Repeated(oLeft, vCounts[Choose(std::size(vCounts))], Choose(3) > 0);
        Piece const oRight = Grow(iDepth - 1);
        return iKind == 3 ? InSequence(oLeft, oRight) : AsBranches(oLeft, oRight);
    }

    Piece MakeLeaf(std::string const & sLeaf)
    {
        bool const bByte = !sLeaf.empty() && sLeaf != "^" && sLeaf != "$" && sLeaf[0] != '\\';
        return {sLeaf, [=, this](std::size_t iAt, Next const & fNext)
            { return ++m_iSteps <= iMaxSteps && Holds(sLeaf, iAt) && fNext(iAt + bByte); }};
    }

    Piece InSequence(Piece const & oLeft, Piece const & oRight)
    {
        return {oLeft.sText + oRight.sText, [=](std::size_t iAt, Next const & fNext)
            { return oLeft.fMatch(iAt, [&](std::size_t i) { return oRight.fMatch(i, fNext); }); }};
    }

    Piece AsBranches(Piece const & oLeft, Piece const & oRight)
    {
        return {"(?:" + oLeft.sText + "|" + oRight.sText + ")", [=](std::size_t iAt, Next const & fNext)
            { return oLeft.fMatch(iAt, fNext) || oRight.fMatch(iAt, fNext); }};
    }

    Piece InGroup(int iDepth, std::size_t iGroup)
    {
        Piece const oInner = Grow(iDepth - 1);
        auto const fMatch = [=, this](std::size_t iAt, Next const & fNext)
        {
            auto const fClose = [&](std::size_t i)
            {
                std::string const sBefore = std::exchange(m_vGroups[iGroup], ShowSpan(iAt, i));
                bool const bMatched = fNext(i);
                if (!bMatched)
                    m_vGroups[iGroup] = sBefore;
                return bMatched;
            };
            return oInner.fMatch(iAt, fClose);
        };
        return {"(" + oInner.sText + ")", fMatch};
    }

    Piece Repeated(Piece const & oInner, Count const & oCount, bool bGreedy)
    {
        return {"(?:" + oInner.sText + ")" + oCount.pText + (bGreedy ? "" : "?"),
            [=, this](std::size_t iAt, Next const & fNext)
            { return Repeat(oInner, oCount, bGreedy, 0, iAt, fNext); }};
    }

    bool Repeat(Piece const & oInner, Count const & oCount, bool bGreedy, std::size_t iDone, std::size_t iAt,
        Next const & fNext)
    {
        auto const fOnce = [&]
        {
            auto const fAgain = [&](std::size_t i)
            {
                bool const bLast = i == iAt && iDone + 1 >= oCount.iMin;
                return bLast ? fNext(i) : Repeat(oInner, oCount, bGreedy, iDone + 1, i, fNext);
            };
            return ++m_iSteps <= iMaxSteps && iDone < oCount.iMax && oInner.fMatch(iAt, fAgain);
        };
        if (iDone < oCount.iMin)
            return fOnce();
        return bGreedy ? fOnce() || fNext(iAt) : fNext(iAt) || fOnce();
    }

    bool Holds(std::string const & sLeaf, std::size_t iAt) const
    {
        bool const bEnd = iAt == m_sText.size();
        bool const bLines = m_iFlags & PatternMatcher::eLineAnchors;
        char const cBefore = iAt == 0 ? '\n' : m_sText[iAt - 1];
        char const cHere = bEnd ? '\n' : m_sText[iAt];
        // The texts have letters, which are the word bytes, and line ends.
        bool const bEdge = (cBefore == '\n') != (cHere == '\n');
        if (sLeaf.empty())
            return true;
        if (sLeaf == "^")
            return iAt == 0 || (bLines && cBefore == '\n' && !bEnd);
        if (sLeaf == "$")
            return bEnd || (cHere == '\n' && (bLines || iAt + 1 == m_sText.size()));
        if (sLeaf[0] == '\\')
            return bEdge == (sLeaf == "\\b");

        char const cLower = m_iFlags & PatternMatcher::eIgnoreCase && cHere == 'A' ? 'a' : cHere;
        if (sLeaf == ".")
            return !bEnd && (cHere != '\n' || m_iFlags & PatternMatcher::eDotMatchesLineEnd);
        if (sLeaf == "[ab]")
            return !bEnd && (cLower == 'a' || cLower == 'b');
        return !bEnd && (sLeaf == "[^a]" ? cLower != 'a' : cLower == sLeaf[0]);
    }

    std::mt19937 & m_oRandom;
    int m_iFlags;
    Piece m_oWhole;
    std::size_t m_iGroups = 0;

    std::string m_sText;
    int m_iSteps = 0;
    std::vector<std::string> m_vGroups;
};

} // namespace

TEST(PatternMatcherRandom, AgreesWithTheObviousMatcher)
{
    std::mt19937 oRandom(20'240'229);
    PatternMatcher::Matches oMatches;
    int iCompared = 0;
    int iFound = 0;
    for (int i = 0; i < 4'000; ++i)
    {
        int const iFlags = static_cast<int>(oRandom() % 8);
        RandomPattern oPattern(oRandom, iFlags);
        // With a branch that never matches but makes the program so big that no text is short for it, the
        // search is done in the way of long texts.
        std::string const sBig = oRandom() % 8 == 0 ? "|\\x02(?:\\x02?){40000}" : "";
        std::string const sPattern = oPattern.GetText() + sBig;
        PatternMatcher const oMatcher(sPattern.c_str(), iFlags);
        for (int j = 0; j < 8; ++j)
        {
            std::string sText;
            for (std::size_t k = oRandom() % 7; k > 0; --k)
                sText += "aabbA\n"[oRandom() % 6];
            std::size_t const iStart = oRandom() % 3 == 0 ? oRandom() % (sText.size() + 1) : 0;
            std::string const sExpected = oPattern.Search(sText, iStart);
            if (sExpected.empty())
                continue;
            oMatcher.Match(sText, iStart, oMatches);
            ASSERT_EQ(Show(oMatches), sExpected)
                << sPattern << " with flags " << iFlags << " on \"" << sText << "\" from " << iStart;
            ++iCompared;
            iFound += sExpected != "none";
        }
    }
    EXPECT_GT(iCompared, 30'000);
    EXPECT_GT(iFound, 12'000);
}
