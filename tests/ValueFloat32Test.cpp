#include "TestPrelude.h"

#include <patternmatcher/PatternMatcher.h>

#include <bit>
#include <clocale>
#include <cmath>
#include <cstdio>

using namespace tsl;
using namespace tsltest;

namespace
{

constexpr float INF = std::numeric_limits<float>::infinity();
constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();
constexpr float FLOAT_MAX = std::numeric_limits<float>::max();
constexpr float FLOAT_DENORM = std::numeric_limits<float>::denorm_min();

std::string Write(ValueFloat32 const & oNumber, std::string const & sIdentifier)
{
    return GetText(oNumber, ValueFloatConverterLayout("${" + sIdentifier + "}"));
}

/// The converter with its part of reading, so that a test sees what it leaves.
class Reader : public ValueFloatConverter
{
public:
    using ValueFloatConverter::DoConvertReplacement;
};

/// What the front of a text reads as.
struct Read
{
    explicit Read(std::string const & sText, char const * sIdentifier = "%f") : sRest(sText)
    {
        static Reader const oReader;
        oResult = oReader.DoConvertReplacement(
            sRest, oNumber, ValueFloatConverterLayout(), ValueString(sIdentifier));
    }

    ValueFloat32 oNumber = 77.0f;
    ValueString sRest;
    Result oResult;
};

std::string Print(char const * sFormat, double fNumber)
{
    char aText[4096];
    std::snprintf(aText, sizeof aText, sFormat, fNumber);
    return aText;
}

TEST(ValueFloat32Arithmetic, ChangesTheNumberAndKeepsTheNullState)
{
    ValueFloat32 oNumber(1.5f);
    ++oNumber;
    oNumber -= 0.25f;
    oNumber /= ValueFloat32(0.5f);
    EXPECT_EQ(oNumber.AsFloat32(), 4.5f);
    oNumber = 3.0f - oNumber * 3.0f / ValueFloat32(2.0f) + 0.75f;
    --oNumber;
    oNumber *= 2.0f;
    EXPECT_EQ(oNumber.AsFloat32(), -8.0f);
    oNumber /= ValueFloat32();
    EXPECT_EQ(oNumber.AsFloat32(), -INF);

    ValueFloat32 oNull;
    oNull += 3.0f;
    ++oNull;
    EXPECT_TRUE((+oNull).IsNull());
    EXPECT_EQ((-oNull).AsFloat32(), -4.0f);
    oNull.SetNull();
    EXPECT_EQ((-oNull).AsFloat32(), 0.0f) << "the former number is gone";
    oNull = 0.5f;
    EXPECT_FALSE(oNull.IsNull());
}

TEST(ValueFloat32Null, IsRefusedWhereANumberIsNeeded)
{
    ValueFloat32 const oNull;
    ValueFloat32 const oOne(1.0f);
    ValueFloatConverterLayout oLayout;
    ASSERT_TRUE(oLayout.SetFormat("${%f}", "${%f}"));
    EXPECT_TRUE(AllAssert("!m_bNull", "Value must not be NULL",
        {[&] { return oNull.AsFloat32(); }, [&] { return oNull + oOne; }, [&] { return oOne - oNull; },
            [&] { return oNull * 1.0f; }, [&] { return oOne / oNull; }, [&] { return oNull == 0.0f; },
            [&] { return oNull < oOne; }, [&] { return GetText(oNull, oLayout); }}));
}

TEST(ValueFloat32Comparing, KnowsAToleranceThatCompareToDoesNot)
{
    constexpr float fTolerance = 0x1p-23f;
    Rows<float, float, int, Value::eCompare> aRows = {
        {0.25f, 0.25f + fTolerance, 0, Value::eLess},
        {0.25f, 0.25f + fTolerance + 0x1p-25f, -1, Value::eLess},
        {0.0f, -0.0f, 0, Value::eEqual},
        {INF, FLOAT_MAX, 1, Value::eGreater},
        {NOT_A_NUMBER, 1.0f, 0, Value::eEqual},
    };
    for (auto const & [fLeft, fRight, iCompare, eCompareTo] : aRows)
    {
        SCOPED_TRACE(Print("%a", fLeft) + " and " + Print("%a", fRight));
        EXPECT_EQ(ValueFloat32(fLeft).CompareTo(ValueFloat32(fRight)), eCompareTo);
        EXPECT_EQ(GetOrder(ValueFloat32(fLeft), fRight), iCompare);
    }
    EXPECT_TRUE(ValueFloat32(0.5f) == 0.5);
    EXPECT_EQ(GetOrder(1.0f, ValueFloat32(0.5f)), 1);
}

TEST(ValueFloat32Writing, FollowsTheFormat)
{
    Rows<float, std::string, std::string> aRows = {
        {FLOAT_DENORM, "%.50f", "0.00000000000000000000000000000000000000000000140130"},
        {INF, "%.3f", "inf"},
        {-NOT_A_NUMBER, "%.2f", "-nan"},
        {1.5f, "about %.1f %%", "about 1.5 %"},
        {1.5f, "%e is of size e", "1.500000e+00 is of size e"},
        {1.5f, "%.3g", "${%.3g}"},
        {1.5f, std::string("%.1f\0%n", 7), "1.5"},
        {1.5f, "%3998.0f", std::string(3997, ' ') + '2'},
        {1.5f, "%.3990f", "1.5" + std::string(3989, '0')},
    };
    for (auto const & [fNumber, sIdentifier, sExpected] : aRows)
        EXPECT_EQ(Write(fNumber, sIdentifier), sExpected) << sIdentifier;

    std::mt19937 oRandom(1);
    char const * const aFormats[] = {"%f", "%.0f", "%.1f", "%.3f", "%.7f", "%.99f", "%13.4f", "%.100f",
        "%-8.3f|", "%+08.3f", "% f", "%#.0f", "%.f", "%lf"};
    for (int i = 0; i < 4000; ++i)
    {
        // Every bit pattern, and numbers that lie halfway between two texts.
        float const fNumber = i % 2 == 0 ? std::bit_cast<float>(static_cast<std::uint32_t>(oRandom()))
                                         : static_cast<float>(oRandom() % 20000) / 16 - 500;
        for (char const * const sFormat : aFormats)
            ASSERT_EQ(Write(fNumber, sFormat), Print(sFormat, fNumber)) << sFormat;
    }
}

TEST(ValueFloat32Writing, RefusesAFormatThatDoesNotSuitAFloat)
{
    for (char const * const sIdentifier : {"%nf", "%*f", "%.*f", "%f%f", "%d f", "%s of", "%1$f", "%'f",
             "%Lf", "%.-1f", "%3999f", "%.3999f", "%.99999999999999999999f", "f%", "%.f%"})
        EXPECT_TRUE(Asserts("false",
            "ValueConverter : Ungültiger Formatstring! String : \"" + std::string(sIdentifier) + '"',
            [&] { Write(1.5f, sIdentifier); }));
    EXPECT_TRUE(Asserts("i >= 0", "Buffer overflow. Formatting argList with string as \"%.3998f\" failed.",
        [] { Write(1.5f, "%.3998f"); }));
    ValueString sText("x");
    EXPECT_TRUE(
        Asserts("!f.IsNull()", "Invalid operation. Value is NULL", [&] { sText += ValueFloat32::Null(); }));
    EXPECT_EQ(sText << ValueFloat32(1.5f), "x1.500000");
}

TEST(ValueFloatLayout, MakesItsFormatOfDecimalPlaces)
{
    ValueFloatConverterLayout oLayout("about ${%e of}");
    EXPECT_TRUE(oLayout.GetDecimalPlaces().IsNull());
    oLayout.SetDecimalPlaces(2);
    ValueFloatConverterLayout oTarget;
    oTarget.Set(ValueFloatConverterLayout(oLayout));
    EXPECT_EQ(oTarget.GetDecimalPlaces(), 2);
    oLayout.SetDecimalPlaces(ValueInt32());
    EXPECT_EQ(GetText(ValueFloat32(1.0f), oTarget) + GetText(ValueFloat32(1.0f), oLayout), "1.001.000000");
    oLayout.SetDecimalPlaces(INT_MIN);
    EXPECT_TRUE(Asserts("false", "ValueConverter : Ungültiger Formatstring! String : \"%.-2147483648f\"",
        [&] { GetText(ValueFloat32(1.0f), oLayout); }));
}

TEST(ValueFloat32Reading, TakesANumberAndLeavesTheRest)
{
    Rows<std::string, float, std::string> aRows = {
        {"  1.5  x", 1.5f, "x"},
        {"-.5e1x", -5.0f, "x"},
        {"-1.25d-1", -0.125f, ""},
        {"0x10", 0.0f, "x10"},
        {"e5", 0.0f, ""},
        {std::string("1\0002", 3), 1.0f, std::string("\0002", 2)},
        {"3.4028234663852886e38", FLOAT_MAX, ""},
        {"0.7e-45", 0.0f, ""},
        {"0.8e-45", FLOAT_DENORM, ""},
        {"-1e-400", -0.0f, ""},
        // Read as a double first, so that the last digit has no say any more.
        {"16777217.0000001", 16777218.0f, ""},
        {"16777217.000000000000000000000000001", 16777216.0f, ""},
    };
    for (auto const & [sText, fExpected, sRest] : aRows)
    {
        SCOPED_TRACE(sText);
        Read const oRead(sText);
        EXPECT_TRUE(oRead.oResult.IsOk());
        EXPECT_EQ(oRead.oNumber.AsFloat32(), fExpected);
        EXPECT_EQ(std::signbit(oRead.oNumber.AsFloat32()), std::signbit(fExpected));
        EXPECT_EQ(oRead.sRest, sRest);
    }
}

TEST(ValueFloat32Reading, FailsWithoutAChange)
{
    std::string const sTooSmall = "4 Overflow. Biggest number for ValueFloat32 is FLOAT32_MIN.";
    std::string const sTooBig = "4 Overflow. Smalest number for ValueFloat32 is FLOAT32_MAX.";
    Rows<std::string, char const *, std::string> aRows = {
        {" x1", "%f", "2 Invalid syntax. Cannot convert ' x1' to ValueFloat."},
        {"-3.402823466385289e38", "%f", sTooSmall},
        {"1e99999999999999999999", "%f", sTooBig},
        {"1.5", "%e", "2 sIdentifier unknown"},
    };
    for (auto const & [sText, sIdentifier, sFailure] : aRows)
    {
        SCOPED_TRACE(sText);
        Read const oRead(sText, sIdentifier);
        EXPECT_EQ(Tell(oRead.oResult), sFailure);
        EXPECT_EQ(oRead.oNumber.AsFloat32(), 77.0f);
        EXPECT_EQ(oRead.sRest, sText);
    }
}

TEST(ValueFloat32Reading, TakesTextsOfAnyLength)
{
    std::string const sZeros(10'000'000, '0');
    // The large number that a negative exponent makes small and the like are read in full.
    for (std::string const & sText : {sZeros + "1.5", "1.5" + sZeros, "15" + sZeros + "e-10000001",
             "0." + sZeros + "15D10000001", "15e-" + sZeros + '1'})
    {
        Read const oRead(sText);
        EXPECT_TRUE(oRead.sRest.IsEmpty()) << sText.substr(0, 20);
        EXPECT_EQ(oRead.oNumber.AsFloat32(), 1.5f) << sText.substr(0, 20);
    }
    EXPECT_EQ(Read(sZeros + '.' + sZeros + "e999999999").oNumber.AsFloat32(), 0.0f);
    EXPECT_EQ(Read("1" + sZeros).oResult.GetErrorCode(), 4);
    EXPECT_EQ(Read(std::string(10'000'000, 'x')).oResult.GetErrorCode(), 2);
}

TEST(ValueFloat32Reading, TakesWhatThePatternOfANumberMatches)
{
    PatternMatcher const oPattern(R"(^[+-]?(\d*)(\.\d+|)((d|D|e|E)[+-]?(\d+)|))");
    std::string_view const sBytes = "0123459+-..eEdD x";
    std::mt19937 oRandom(3);
    for (int i = 0; i < 30'000; ++i)
    {
        std::string sText;
        for (std::size_t iLength = oRandom() % 10; iLength > 0; --iLength)
            sText += sBytes[oRandom() % sBytes.size()];
        SCOPED_TRACE('"' + sText + '"');
        std::string const sTrimmed = sText.substr(std::min(sText.find_first_not_of(' '), sText.size()));

        PatternMatcher::Matches oMatches;
        oPattern.Match(sTrimmed, 0, oMatches);
        std::string sNumber(oMatches.GetText(sTrimmed, 0));
        std::string sRest = sTrimmed.substr(sNumber.size());
        sRest.erase(0, sRest.find_first_not_of(' '));
        std::replace_if(
            sNumber.begin(), sNumber.end(), [](char c) { return c == 'd' || c == 'D'; }, 'e');
        double const fExpected = std::strtod(sNumber.c_str(), nullptr);

        Read const oRead(sText);
        ValueFloat32 fWhole = 77.0f;
        Result const oWhole = fWhole.GetConverter().ConvertFromText(sText, fWhole);
        if (sNumber.empty() || std::abs(fExpected) > FLOAT_MAX)
        {
            ASSERT_EQ(oRead.oResult.GetErrorCode(), sNumber.empty() ? 2 : 4);
            ASSERT_EQ(oWhole.GetErrorCode(), oRead.oResult.GetErrorCode());
            continue;
        }
        ASSERT_TRUE(oRead.oResult.IsOk());
        ASSERT_EQ(oRead.oNumber.AsFloat32(), static_cast<float>(fExpected));
        ASSERT_EQ(oRead.sRest, sRest);
        ASSERT_EQ(oWhole.IsOk(), sRest.empty());
        ASSERT_EQ(fWhole.AsFloat32(), static_cast<float>(fExpected));
    }
}

TEST(ValueFloat32Reading, RoundsAsTheRuntimeLibraryDoes)
{
    // Long texts and those with a d take another way than the others.
    std::mt19937 oRandom(2);
    for (int i = 0; i < 20'000; ++i)
    {
        std::string sText;
        for (std::size_t iDigits = 1 + oRandom() % (i % 8 == 0 ? 900 : 20); iDigits > 0; --iDigits)
            sText += static_cast<char>('0' + oRandom() % 10);
        sText.insert(oRandom() % sText.size(), 1, '.');
        int const iPower = static_cast<int>(oRandom() % 78) - 40 - static_cast<int>(sText.find('.'));
        std::string const sPower = std::to_string(iPower);
        float const fExpected = static_cast<float>(std::strtod((sText + 'e' + sPower).c_str(), nullptr));
        ASSERT_EQ(Read(sText + 'e' + sPower).oNumber.AsFloat32(), fExpected) << sText << 'e' << sPower;
        ASSERT_EQ(Read(sText + 'D' + sPower).oNumber.AsFloat32(), fExpected) << sText << 'D' << sPower;
    }
}

TEST(ValueFloat32Locale, IsOfNoInfluence)
{
    // What the system's locale compiler makes of a locale with a decimal comma and nothing else in it; none
    // like it need be installed.
    TestProgram const oPlace("Reporter");
    std::uint32_t const aContent[] = {0x20031115 ^ 1, 6, 32, 34, 35, 36, 40, 44, ',', ',', 0};
    std::filesystem::create_directory(oPlace.GetPath() / "comma");
    std::string const sContent(reinterpret_cast<char const *>(aContent), sizeof aContent);
    oPlace.WriteFile("comma/LC_NUMERIC", sContent + std::string("UTF-8", 6));
    ::setenv("LOCPATH", oPlace.GetPath().c_str(), 1);
    std::setlocale(LC_NUMERIC, "comma");
    EXPECT_EQ(Print("%.1f", 1.5), "1,5");

    for (char const * const sFormat : {"%f", "%+f", "%9.6f", "%e of"})
        EXPECT_EQ(Write(1.5f, sFormat).find(','), std::string::npos) << sFormat;
    EXPECT_EQ(Read("1.5").oNumber.AsFloat32(), 1.5f);
    EXPECT_EQ(Read("1.5d0").oNumber.AsFloat32(), 1.5f);
    EXPECT_EQ(Read("1,5").sRest, ",5");

    // The program keeps the locale that it has chosen.
    EXPECT_EQ(Print("%.1f", 1.5), "1,5");
    std::setlocale(LC_NUMERIC, "C");
    ::unsetenv("LOCPATH");
}

} // namespace
