#include "TestPrelude.h"

#include <patternmatcher/PatternMatcher.h>

#include <numeric>

#include <malloc.h>
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

/// A search and its outcome as Show.
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

// Branches, repetitions, groups and places of lines are also those of the random patterns below.
TEST(PatternMatcherSyntax, EachElementMatchesWhatItMeans)
{
    constexpr int iCase = PatternMatcher::eIgnoreCase;
    constexpr int iLines = PatternMatcher::eLineAnchors;
    Check({
        {"", "abc", "0,0"},
        {"a.c", std::string("a\0c", 3), "0,3"},
        {R"(\\\^\$\*\{\}\[\]\(\)\|\-\_\ \.)", R"(\^$*{}[]()|-_ .)", "0,15"},
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
        {"[b-d-]+", "ab-de", "1,4"},
        {"[]a]+", "b]a", "1,3"},
        {"[^]a]+", "]ab", "2,3"},
        {R"([\d.x-]+)", "a-1.5x", "1,6"},
        {R"([a-\d]+)", "ba-7b", "1,4"},
        {R"([\x41-\x43\]\\]+)", "aAB]\\C", "1,6"},
        {R"([\b])", "a\b", "1,2"},
        {"[.$(|[:a]+", "x.$(|[:ax", "1,8"},
        {R"([^\x00-\xff])", "abc", "none"},
        // repetitions
        {"(a){0}b", "ab", "1,2 -"},
        {"^*a", "ba", "1,2"},
        {"a{,3}{x}{1,b", "a{,3}{x}{1,b", "0,12"},
        {"{}a]}", "{}a]}", "0,5"},
        // places
        {"a$", "a\n\n", "none"},
        {R"(a\z)", "a\n", "none"},
        {R"(a\Z)", "a\n", "0,1"},
        {R"(\Aa)", "ba", "none"},
        {R"(\bb\w*\b)", "ab b_1-", "3,6"},
        // flags
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
        {"(?:{2})", "nothing to repeat", 3},
        {"a{2}{3}", "nothing to repeat", 4},
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
        {Repeat("(", 1'001) + "a" + Repeat(")", 1'001), "nested too deeply", 1000},
        {Repeat("(", 1'000'000), "nested too deeply", 1000},
        {std::string(1'000'000, '['), "missing ]", 0},
        {"(?:(?:(?:a?){65535}){65535}){65535}", "too large", iAny},
        {std::string(1'000'000, 'a'), "too large", iAny},
        {Repeat("(a?)", 158), "too many groups", 632},
        {"a{20000}", "too large", 8},
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
    EXPECT_THROW(PatternMatcher("a", -1), std::invalid_argument);
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
        {"b*", "ab", "2,2", 0, 2},
        {"", "ab", "none", 0, 3},
        {"a", "a", "none", 0, SIZE_MAX},
        {pFloat, "-12.375e-3", "0,10 1,3 3,7 7,10 7,8 9,10"},
        {pFloat, "+e5", "0,3 1,1 1,1 1,3 1,2 2,3"},
    });
}

TEST(PatternMatcherResult, SubstrGivesTheGroupsOfTheLastMatch)
{
    PatternMatcher const oMatcher("(a+)(x)?(b)", 0);
    std::string const sText = "--aab";
    auto const fGetGroups = [&](std::string const & s)
    {
        return oMatcher.substr(s, 0) + '/' + oMatcher.substr(s, 1) + '/' + oMatcher.substr(s, 2) + '/'
               + oMatcher.substr(s, 4) + oMatcher.substr(s, UINT_MAX);
    };
    EXPECT_EQ(fGetGroups(sText), "///");
    EXPECT_EQ(oMatcher.Match(sText, 0), 4u);
    EXPECT_EQ(fGetGroups(sText), "aab/aa//");
    EXPECT_EQ(fGetGroups("--a"), "a/a//") << "a shorter text than the one that was searched";
    EXPECT_EQ(fGetGroups("-"), "///");
    EXPECT_EQ(oMatcher.Match("ac", 0), 0u);
    EXPECT_EQ(fGetGroups(sText), "///");
}

TEST(PatternMatcherResult, SearchesStopAllocating)
{
    EXPECT_EQ(TestProgram("Allocations").Run({"matches"}).sOutput, "0\n");
}

TEST(PatternMatcherLimits, NoPatternNeedsMuchMemory)
{
    std::string sBytes = "\\x01";
    for (char c = '0'; c <= 'z'; ++c)
        sBytes += std::string("|\\") + "x" + "0123456789abcdef"[c / 16] + "0123456789abcdef"[c % 16];

    // Those near the limits in which a search has to remember most.
    std::string const sText(1'000, 'a');
    for (std::string const & sPattern : {std::string("(?:a?){9990}b"), Repeat("(a?)", 156) + "b",
             Repeat("(?:", 90) + "a?" + Repeat(")*", 90) + "b",
             "^(?:" + Repeat("(", 99) + sBytes + Repeat(")", 99) + ")*"})
    {
        std::size_t const iBefore = ::mallinfo2().uordblks + ::mallinfo2().hblkhd;
        PatternMatcher const oMatcher(sPattern.c_str());
        PatternMatcher::Matches oMatches;
        for (unsigned int const iLength : {10u, 300u, 1'000u})
            oMatcher.Match(sText.substr(0, iLength), 0, oMatches);
        EXPECT_LT(::mallinfo2().uordblks + ::mallinfo2().hblkhd - iBefore, 8u << 20)
            << sPattern.substr(0, 60);
    }
}

TEST(PatternMatcherLimits, NoPatternBlowsUp)
{
    std::string const sText = std::string(40'000, 'a') + "!";
    for (char const * const pPattern :
        {"(a*)*b", "(a+)+$b", "(a|aa)+$", "(?:a?){50}a{50}b", "((a*)*)*b", "(.*)(.*)(.*)(.*)b", "^(a+)+$",
            "(x+x+)+y", "^a(?:|){60}[^\\x00-\\xff]", "(?:a*?)*?b", "([a-z]+)*[0-9]"})
        Check({{pPattern, sText, "none"}, {pPattern, sText.substr(39'950), "none"}});
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
    ASSERT_EQ(pthread_attr_init(&oAttributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&oAttributes, 65'536), 0);
    pthread_t oThread;
    ASSERT_EQ(pthread_create(&oThread, &oAttributes, fMain, nullptr), 0);
    pthread_join(oThread, nullptr);
    pthread_attr_destroy(&oAttributes);
}

TEST(PatternMatcherThreads, OneMatcherServesSeveralThreads)
{
    PatternMatcher const oWords(R"((\w+)=(\w*))", 0);
    std::string const aTexts[] = {Repeat("- ", 20'000) + "key=value", "key=value"};
    std::atomic<int> iFailures = 0;
    RunOnThreads(4,
        [&](int)
        {
            PatternMatcher::Matches oMatches;
            for (std::size_t i = 0; i < 50; ++i)
            {
                oWords.Match(aTexts[i % 2], 0, oMatches);
                iFailures += oMatches.GetText(aTexts[i % 2], 2) != "value";
            }
        });
    EXPECT_EQ(iFailures, 0);
}

namespace
{

/// A random pattern, which is built together with a matcher that tries everything in order.
class RandomPattern
{
public:
    /// One in four is anchored: those may be executed in a way of their own.
    RandomPattern(std::mt19937 & oRandom, int iFlags) : m_oRandom(oRandom), m_iFlags(iFlags)
    {
        Piece const oInner = Grow(4);
        m_sPattern = (Choose(4) == 0 ? "^" : "") + oInner.sText;
        m_oWhole = AsGroup(m_sPattern[0] == '^' ? InSequence(MakeLeaf("^"), oInner) : oInner, 0);
    }

    std::string const & GetText() const { return m_sPattern; }

    /// As Show. Empty if it would take too long.
    std::string Search(std::string const & sText, std::size_t iStart)
    {
        m_sText = sText;
        m_iSteps = 0;
        for (; iStart <= sText.size(); ++iStart)
        {
            m_vGroups.assign(m_iGroups + 1, "-");
            bool const bFound = m_oWhole.fMatch(iStart, [](std::size_t) { return true; });
            if (m_iSteps > iMaxSteps)
                return "";
            if (bFound)
                return std::accumulate(m_vGroups.begin() + 1, m_vGroups.end(), m_vGroups[0],
                    [](std::string const & sLeft, std::string const & s) { return sLeft + " " + s; });
        }
        return "none";
    }

private:
    /// What is to match after a piece; false makes the piece try its next way.
    using Next = std::function<bool(std::size_t)>;

    struct Piece
    {
        std::string sText;
        std::function<bool(std::size_t, Next const &)> fMatch;
    };

    struct Count
    {
        char const * pText;
        std::size_t iMin, iMax;
    };

    static constexpr int iMaxSteps = 1'000;

    std::size_t Choose(std::size_t iCount) { return m_oRandom() % iCount; }

    Piece Grow(int iDepth)
    {
        static char const * const vLeaves[] = {
            "a", "b", "a", "b", ".", "[ab]", "[^a]", "", "^", "$", "\\b", "\\B"};
        static Count const vCounts[] = {{"*", 0, SIZE_MAX}, {"+", 1, SIZE_MAX}, {"?", 0, 1}, {"{2}", 2, 2},
            {"{0,2}", 0, 2}, {"{1,3}", 1, 3}, {"{2,}", 2, SIZE_MAX}};

        std::size_t const iKind = iDepth == 0 ? 0 : Choose(5);
        if (iKind == 0)
            return MakeLeaf(vLeaves[Choose(std::size(vLeaves))]);
        std::size_t const iGroup = iKind == 1 ? ++m_iGroups : 0;
        Piece const oLeft = Grow(iDepth - 1);
        if (iKind == 1)
            return AsGroup(oLeft, iGroup);
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

    Piece AsGroup(Piece const & oInner, std::size_t iGroup)
    {
        auto const fMatch = [=, this](std::size_t iAt, Next const & fNext)
        {
            auto const fClose = [&](std::size_t i)
            {
                std::string const sBefore = std::exchange(m_vGroups[iGroup], ShowSpan(iAt, i));
                return fNext(i) || (m_vGroups[iGroup] = sBefore, false);
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
        // A turn that matches nothing is the last one.
        auto const fAgain = [&](std::size_t i)
        {
            bool const bLast = i == iAt && iDone + 1 >= oCount.iMin;
            return bLast ? fNext(i) : Repeat(oInner, oCount, bGreedy, iDone + 1, i, fNext);
        };
        auto const fEnd = [&] { return iDone >= oCount.iMin && fNext(iAt); };
        if (!bGreedy && fEnd())
            return true;
        bool const bOnce = ++m_iSteps <= iMaxSteps && iDone < oCount.iMax && oInner.fMatch(iAt, fAgain);
        return bOnce || (bGreedy && fEnd());
    }

    /// Whether the leaf holds at a place. The texts have letters, which are the word bytes, and line ends.
    bool Holds(std::string const & sLeaf, std::size_t iAt) const
    {
        bool const bEnd = iAt == m_sText.size();
        bool const bLines = m_iFlags & PatternMatcher::eLineAnchors;
        char const cBefore = iAt == 0 ? '\n' : m_sText[iAt - 1];
        char const cHere = bEnd ? '\n' : m_sText[iAt];
        if (sLeaf.empty())
            return true;
        if (sLeaf == "^")
            return iAt == 0 || (bLines && cBefore == '\n' && !bEnd);
        if (sLeaf == "$")
            return bEnd || (cHere == '\n' && (bLines || iAt + 1 == m_sText.size()));
        if (sLeaf[0] == '\\')
            return ((cBefore == '\n') != (cHere == '\n')) == (sLeaf == "\\b");

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
    std::string m_sPattern, m_sText;
    std::size_t m_iGroups = 0;
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
    for (int i = 0; i < 1'000; ++i)
    {
        int const iFlags = static_cast<int>(oRandom() % 8);
        RandomPattern oPattern(oRandom, iFlags);
        // With a branch that never matches but makes the program so big that no text is short for it, the
        // search is done in the way of long texts.
        std::string const sBig = i % 16 == 0 ? "|\\x02(?:|){9000}" : "";
        std::string const sPattern = oPattern.GetText() + sBig;
        PatternMatcher const oMatcher(sPattern.c_str(), iFlags);
        for (int j = 0; j < 6; ++j)
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
    EXPECT_GT(iCompared, 5'000);
    EXPECT_GT(iFound, 2'000);
}
