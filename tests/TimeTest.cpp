#include "TestPrelude.h"

#include <ctime>

using namespace tsl;
using namespace tsltest;

namespace
{

constexpr TimeZone::EZone GREENWICH = TimeZone::eGreenwich;
constexpr TimeZone::EZone EUROPE = TimeZone::eEurope;

// 2024-07-03 09:46:40 in Greenwich, 11:46:40 in Berlin.
constexpr long long SUMMER = 1'720'000'000;

/// Moves the process into a zone for as long as the object lives, and then into one that the library serves,
/// which the machine's own need not be.
class LocalZone
{
public:
    explicit LocalZone(char const * sZone = "Europe/Berlin") { Set(sZone); }
    ~LocalZone() { Set("UTC"); }

private:
    static void Set(char const * sZone)
    {
        ::setenv("TZ", sZone, 1);
        TimeZone::Init();
    }
};

using Numbers = std::vector<int>;

/// Days, hours, minutes, seconds and the whole in seconds.
Numbers GetParts(TimeSpan const & o)
{
    return {o.GetDays(), o.GetHours(), o.GetMinutes(), o.GetSeconds(), o.GetAsSeconds()};
}

/// Year to second, daylight saving, zone and precision.
Numbers GetParts(DateTimeElements const & o)
{
    return {o.m_iYear, o.m_iMonth, o.m_iDay, o.m_iHour, o.m_iMinute, o.m_iSecond, o.m_iDLS, o.m_eZone,
        o.m_ePrecision};
}

std::string Format(DateTime const & oMoment, char const * sFormat, TimeZone::EZone eZone = GREENWICH)
{
    String sText("former");
    oMoment.Format(sFormat, sText, eZone);
    return sText.s_str();
}

} // namespace

TEST(TimeSpanParts, AreSpreadOverTheirRangesAndCountedToThePrecision)
{
    Rows<char const *, TimeSpan, Numbers> aRows = {
        {"too large", {1, 25, 0, 60}, {2, 1, 1, 0, 176460}},
        {"negative", {-1, 0, 0, -90}, {-1, 0, -1, -30, -86490}},
        {"seconds of another sign, which keep to themselves", {0, 0, 1, -1}, {0, 0, 0, -1, -1}},
        {"-2^31 times an odd number", {INT_MIN, INT_MIN, INT_MIN, INT_MIN}, {-24855, -3, -14, -8, INT_MIN}},
    };
    for (auto const & [sCase, oSpan, vParts] : aRows)
        EXPECT_EQ(GetParts(oSpan), vParts) << sCase;

    TimeSpan oSpan(1, 2, 3, 4);
    for (int i = 0; int const iSeconds : {86400, 93600, 93780, 93784, 0})
    {
        oSpan.SetPrecision(static_cast<Time::Precision>(i++));
        EXPECT_EQ(oSpan.GetAsSeconds(), iSeconds);
    }
}

TEST(DurationMeasuring, CountsMillisecondsFromStartToStop)
{
    Duration oWatch;
    oWatch.Start();
    OS::Sleep(30);
    OS::Sleep(-1);
    oWatch.Stop();
    long const iStopped = oWatch.GetDuration();
    EXPECT_GE(iStopped, 29) << "both readings of the clock are truncated to whole milliseconds";
    EXPECT_TRUE(WaitUntil([oBegin = std::clock()] { return std::clock() > oBegin + CLOCKS_PER_SEC / 200; }));
    EXPECT_EQ(oWatch.GetDuration(), iStopped);
}

TEST(TimeZoneTexts, NameEveryZone)
{
    char const * const aTexts[] = {"", "NewZealand", "CarolineIslands", "MarianaIslands", "Japan", "China",
        "Java", "Kazakh", "Pakistan", "CaspianSea", "Ukraine", "Nile", "Europe", "Greenwich", "Azores",
        "Oscar", "Greenland", "Atlantic", "USEastern", "USCentral", "USMountain", "USPacific", "Yukon",
        "Hawaii", "Bering", "Eniwetok", ""};
    for (int i = -13; i <= 13; ++i)
        EXPECT_STREQ(TimeZone::GetZoneAsText(static_cast<TimeZone::EZone>(i)), aTexts[i + 13]);
}

TEST(TimeZoneLocal, HasItsDaylightSavingAlsoWhereItIsGreenwich)
{
    // The hour of SUMMER, its daylight saving, and the hour of 2024-01-01 00:00:00 in Greenwich. Auckland has its
    // summer in January.
    Rows<char const *, int, int, int, int> aRows = {
        {"Europe/London", 0, 10, 1, 0},
        {"America/New_York", 5, 5, 1, 19},
        {"Pacific/Auckland", -12, 21, 0, 13},
    };
    for (auto const & [sZone, iZone, iHour, iDLS, iWinterHour] : aRows)
    {
        SCOPED_TRACE(sZone);
        LocalZone const oZone(sZone);
        TimeZone::EZone const eLocal = TimeZone::GetLocal();
        EXPECT_EQ(eLocal, iZone);
        EXPECT_EQ(DateTime(1'704'067'200, Time::ePrecisionHour).GetHour(eLocal), iWinterHour);
        DateTimeElements oElements = DateTime(SUMMER, Time::ePrecisionSecond).GetElements(eLocal);
        EXPECT_EQ(oElements.m_iHour, iHour);
        EXPECT_EQ(oElements.m_iDLS, iDLS);
        oElements.SetDLS(Time::eDLSUnknown);
        EXPECT_EQ(DateTime(oElements).GetAsTime_t(), SUMMER);
    }

    // The two hours at the end of summer.
    LocalZone const oZone;
    DateTimeElements oElements(2024, 9, 27, 2, 0, 0, EUROPE);
    oElements.SetDLS(Time::eDLSOn);
    EXPECT_EQ(DateTime(oElements).GetAsTime_t(), 1'729'987'200);
    oElements.SetDLS(Time::eDLSOff);
    EXPECT_EQ(DateTime(oElements).GetAsTime_t(), 1'729'990'800);
}

TEST(TimeZoneMisuse, ZonesThatCannotBeServedAreAssertionFailures)
{
    std::tm oTm{};
    for (auto const & [sZone, sExpression] :
        std::map<char const *, char const *>{{"Asia/Kolkata", "seconds%3600==0"},
            {"Pacific/Kiritimati", "hours >= eNewZealand && hours <= eEniwetok"}})
    {
        LocalZone const oZone(sZone);
        EXPECT_TRUE(Asserts(sExpression, "Internal", [&] { TimeZone::ConvertToZone(0, GREENWICH, oTm); }));
    }

    LocalZone const oZone;
    long long iTime = 0;
    EXPECT_TRUE(Asserts("false", "Conversion to time zone Yukon is not implemented yet",
        [&] { TimeZone::ConvertToZone(0, TimeZone::eYukon, oTm); }));
    EXPECT_TRUE(Asserts("false", "Conversion from time zone Yukon + is not implemented yet",
        [&] { TimeZone::ConvertFromZone(oTm, TimeZone::eYukon, iTime); }));
}

TEST(TimeZoneMisuse, TimesThatCannotBeConvertedAreFailures)
{
    LocalZone const oZone;
    for (TimeZone::EZone const eZone : {EUROPE, GREENWICH})
    {
        DateTime const oMoment(LLONG_MAX, Time::ePrecisionSecond);
        Exception const oException = Catch([&] { oMoment.GetYear(eZone); });
        EXPECT_STREQ(oException.GetText(), eZone == EUROPE ? "Time cannot be converted to local time"
                                                           : "Time cannot be converted to gm time");
        EXPECT_EQ(oException.GetResult().GetErrorCode(), 2);
        EXPECT_EQ(oException.GetResult().GetHistory(0).GetErrorCode(), EOVERFLOW);
    }

    // The second one is the runtime library's sign of a failure.
    DateTime oMoment(SUMMER, Time::ePrecisionHour);
    for (DateTimeElements const & oElements :
        {DateTimeElements(INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX, GREENWICH),
            DateTimeElements(1970, 0, 1, 0, 0, -1, GREENWICH)})
    {
        EXPECT_EQ(Tell(Catch([&] { oMoment.SetElements(oElements); }).GetResult()).substr(0, 46),
            "2 Time components cannot be converted to time");
        EXPECT_EQ(oMoment, DateTime(SUMMER, oElements.GetPrecision()));
    }
}

TEST(DateTimeElementsOrder, GoesByEachSidesOwnPrecision)
{
    DateTimeElements const oDay(2024, 1, 29, GREENWICH);
    DateTimeElements const oTime(2024, 1, 29, 10, 20, 30, GREENWICH);
    DateTimeElements oHour(oTime);
    oHour.SetPrecision(Time::ePrecisionHour);

    Rows<char const *, DateTimeElements, DateTimeElements, int> aRows = {
        {"years", {2023, 11, 1, GREENWICH}, oDay, -1},
        {"without a sign", {-1, 0, 1, GREENWICH}, oDay, 1},
        {"finer than the left one", oDay, {2024, 1, 29, 0, 0, 1, GREENWICH}, -1},
        {"minutes that do not count", oHour, {2024, 1, 29, 10, 0, 0, GREENWICH}, 0},
    };
    for (auto const & [sCase, oLeft, oRight, iOrder] : aRows)
    {
        EXPECT_EQ(GetOrder(oLeft, oRight), iOrder) << sCase;
        EXPECT_EQ(GetOrder(oRight, oLeft), -iOrder) << sCase;
    }

    // Daylight saving that is none.
    DateTimeElements oElements(oDay);
    std::tm oTm{};
    oTm.tm_isdst = 2;
    std::string const sExpression = "dls==Time::eDLSOff || dls==Time::eDLSOn || dls==Time::eDLSUnknown";
    EXPECT_TRUE(Asserts(sExpression, "Invalid enum", [&] { oElements.SetDLS(-2); }));
    EXPECT_TRUE(Asserts(sExpression, "Invalid enum", [&] { oElements.FromTm(oTm, Time::ePrecisionHour); }));
    EXPECT_EQ(oElements, oDay);
}

TEST(DateTimeMoments, LieAroundTheCurrentTime)
{
    LocalZone const oZone;
    // The time of day is kept, but not in the two that are computed.
    Rows<long long, long long, int> aRows = {
        {1, 0, Time::ePrecisionSecond},
        {1, 0, Time::ePrecisionDay},
        {86400, -86400, Time::ePrecisionDay},
        {86400, 86400, Time::ePrecisionDay},
    };
    for (int i = 0; auto const & [iUnit, iDistance, iPrecision] : aRows)
    {
        long long const iBefore = std::time(nullptr);
        DateTime const oMoment(static_cast<DateTime::EMoment>(i++));
        EXPECT_GE(oMoment.GetAsTime_t(), iBefore / iUnit * iUnit + iDistance) << i;
        EXPECT_LE(oMoment.GetAsTime_t(), std::time(nullptr) / iUnit * iUnit + iDistance) << i;
        EXPECT_EQ(oMoment.GetPrecision(), iPrecision);
    }
    EXPECT_TRUE(Asserts("false", "Not implemented", [] { DateTime(static_cast<DateTime::EMoment>(4)); }));
}

TEST(DateTimeConversion, TruncatesWhatThePrecisionDoesNotCount)
{
    LocalZone const oZone;
    Rows<int, int, int, long long> aRows = {
        {0, 0, 0, 1'719'957'600},
        {11, 0, 0, 1'719'997'200},
        {11, 46, 0, 1'719'999'960},
        {11, 46, 40, SUMMER},
    };
    for (int i = 0; auto const & [iHour, iMinute, iSecond, iMoment] : aRows)
    {
        DateTime const oMoment(SUMMER, static_cast<Time::Precision>(i));
        DateTimeElements oElements = oMoment.GetElements(EUROPE);
        EXPECT_EQ(GetParts(oElements), (Numbers{2024, 6, 3, iHour, iMinute, iSecond, 1, EUROPE, i}));
        // No conversion where none is needed: it would fail for this zone.
        EXPECT_EQ(oMoment.GetHour(i < 1 ? TimeZone::eYukon : EUROPE), iHour);
        EXPECT_EQ(oMoment.GetMinute(i < 2 ? TimeZone::eYukon : EUROPE), iMinute);
        EXPECT_EQ(oMoment.GetSecond(i < 3 ? TimeZone::eYukon : EUROPE), iSecond);

        oElements.m_iHour = 11;
        oElements.m_iMinute = 46;
        oElements.m_iSecond = 40;
        EXPECT_EQ(DateTime(oElements).GetAsTime_t(), iMoment);
        ++i;
    }
}

TEST(DateTimeConversion, ReachesFromLongAgoToTheLastYear)
{
    LocalZone const oZone;
    // The year 2,147,485,547, which an int can only hold as its difference from 1900.
    DateTimeElements const oElements(INT_MIN + 1899, 11, 31, 23, 59, 59, GREENWICH);
    DateTime oLast(oElements);
    EXPECT_EQ(oLast.GetElements(GREENWICH), oElements);
    EXPECT_THROW(oLast.Add(1), Exception);
    EXPECT_EQ(oLast.GetAsTime_t(), 67'768'036'191'676'799);
}

TEST(DateTimeArithmetic, MovesByThePartsThatThePrecisionCounts)
{
    LocalZone const oBerlin;
    // 2024-07-03 is 1719964800, 9 hours are 32400 seconds, 46 minutes 2760.
    Rows<char const *, int, TimeSpan, long long, long long> aRows = {
        {"second", 3, {2, 3, 4, 5}, 1'720'183'845, 1'719'816'155},
        {"day", 0, {2, 3, 4, 5}, 1'720'137'600, 1'719'792'000},
        {"days keep their length over the end of summer", 3, {120, 0, 0, 0}, 1'730'368'000, 1'709'632'000},
    };
    for (auto const & [sCase, iPrecision, oSpan, iSum, iDifference] : aRows)
    {
        DateTime oSum(SUMMER, static_cast<Time::Precision>(iPrecision));
        DateTime oDifference(oSum);
        oSum.Add(oSpan);
        oDifference.Sub(oSpan);
        EXPECT_EQ(oSum.GetAsTime_t(), iSum) << sCase;
        EXPECT_EQ(oDifference.GetAsTime_t(), iDifference) << sCase;
    }
}

TEST(DateTimeFormat, WritesUpTo127BytesAndThrowsForLongOrEmptyTexts)
{
    LocalZone const oZone;
    DateTime const oMoment(SUMMER, Time::ePrecisionSecond);
    EXPECT_EQ(Format(oMoment, "%H:%M %j %w %z %Z", EUROPE), "11:46 185 3 +0200 CEST");
    EXPECT_EQ(Format(oMoment, std::string(127, 'x').c_str()), std::string(127, 'x'));
    EXPECT_EQ(Format(oMoment, std::string(128, 'x').c_str()), "");

    // Odd directives: all pairs of bytes after a percent sign.
    for (int i = 0x0101; i <= 0xFFFF; ++i)
    {
        char const aFormat[] = {'-', '%', static_cast<char>(i & 0xFF), static_cast<char>(i >> 8), '\0'};
        EXPECT_EQ(Format(oMoment, aFormat).front(), '-');
    }

    std::string const sLong(4000, 'x');
    for (char const * const sFormat : {sLong.c_str(), "%1000000000d", "", static_cast<char const *>(nullptr)})
    {
        String sText("former");
        EXPECT_EQ(Tell(Catch([&] { oMoment.Format(sFormat, sText, GREENWICH); }).GetResult()),
            "4 Function strftime cannot format DateTime object. Formatted string exceeds size of 4000 "
            "chars!");
        EXPECT_EQ(sText, "former");
    }
}
