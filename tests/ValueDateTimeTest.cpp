#include "AssertionTest.h"

#include <tessel/ValueConverter.h>
#include <tessel/ValueDateTime.h>
#include <tessel/ValueDateTimeConverter.h>

#include <functional>
#include <memory>

namespace
{

using tsl::DateTime;
using tsl::DateTimeElements;
using tsl::Time;
using tsl::TimeZone;
using tsl::Value;
using tsl::ValueDateTime;
using tsl::ValueString;
using tsltest::Asserts;

constexpr char const * NULL_INFO = "Value must not be NULL";
constexpr char const * NULL_RECEIVER_INFO = "Invalid operation. ValueDateTime is NULL";

// 2024-02-29 12:34:56 in Greenwich.
constexpr long long LEAP_DAY = 1'709'210'096;

std::string Write(ValueDateTime const & oMoment, tsl::ValueConverterLayout const & oLayout)
{
    ValueString sText("");
    oMoment.GetConverter().ConvertToText(oMoment, sText, oLayout);
    return sText.s_str();
}

TEST(ValueDateTimeMoment, IsThatOfItsDateTime)
{
    ValueDateTime oMoment(LEAP_DAY, Time::ePrecisionSecond);
    EXPECT_EQ(oMoment.GetYear(TimeZone::eGreenwich), 2024);
    EXPECT_EQ(oMoment.GetMonth(TimeZone::eGreenwich), 1);
    EXPECT_EQ(oMoment.GetDay(TimeZone::eGreenwich), 29);
    EXPECT_EQ(oMoment.GetHour(TimeZone::eGreenwich), 12);
    EXPECT_EQ(oMoment.GetMinute(TimeZone::eGreenwich), 34);
    EXPECT_EQ(oMoment.GetSecond(TimeZone::eGreenwich), 56);
    EXPECT_EQ(oMoment.GetPrecision(), Time::ePrecisionSecond);
    EXPECT_EQ(oMoment.GetElements(TimeZone::eGreenwich).m_iSecond, 56);
    DateTimeElements oElements(TimeZone::eGreenwich);
    oMoment.GetElements(oElements);
    EXPECT_EQ(oElements.m_iDay, 29);

    tsl::String sText;
    oMoment.Format("%Y-%m-%d %H:%M:%S", sText, TimeZone::eGreenwich);
    EXPECT_EQ(sText, "2024-02-29 12:34:56");

    oMoment.Add(tsl::TimeSpan(1, 0, 0, 4));
    EXPECT_EQ(oMoment.GetAsTime_t(), LEAP_DAY + 86404);
    oMoment.Sub(tsl::TimeSpan(1, 0, 0, 4));
    EXPECT_EQ(oMoment.GetAsTime_t(), LEAP_DAY);

    EXPECT_EQ(ValueDateTime(DateTime::eToday).GetPrecision(), Time::ePrecisionDay);
    EXPECT_EQ(ValueDateTime(DateTime(LEAP_DAY, Time::ePrecisionHour)).GetMinute(TimeZone::eGreenwich), 0);
}

TEST(ValueDateTimeNull, IsRefusedWhereAMomentIsNeeded)
{
    ValueDateTime oNull;
    ValueDateTime oMoment(LEAP_DAY, Time::ePrecisionSecond);
    DateTimeElements oElements(TimeZone::eGreenwich);
    tsl::String sText;
    std::function<void()> const aCalls[] = {
        [&] { oNull.AsDateTime(); },
        [&] { static_cast<void>(oNull.GetElements(TimeZone::eGreenwich)); },
        [&] { oNull.GetElements(oElements); },
        [&] { static_cast<void>(oNull.GetYear(TimeZone::eGreenwich)); },
        [&] { static_cast<void>(oNull.GetMonth(TimeZone::eGreenwich)); },
        [&] { static_cast<void>(oNull.GetDay(TimeZone::eGreenwich)); },
        [&] { static_cast<void>(oNull.GetHour(TimeZone::eGreenwich)); },
        [&] { static_cast<void>(oNull.GetMinute(TimeZone::eGreenwich)); },
        [&] { static_cast<void>(oNull.GetSecond(TimeZone::eGreenwich)); },
        [&] { oNull.Format("%Y", sText, TimeZone::eGreenwich); },
        [&] { oNull.Add(tsl::TimeSpan(1, 0, 0, 0)); },
        [&] { oNull.Sub(tsl::TimeSpan(1, 0, 0, 0)); },
        [&] { static_cast<void>(oNull.GetPrecision()); },
        [&] { static_cast<void>(oNull.GetAsTime_t()); },
        [&] { ValueDateTime const oCopy(oNull); },
        [&] { oMoment = oNull; },
        [&] { oMoment.Set(oNull); },
        [&] { std::unique_ptr<tsl::Root> const pCopy(oNull.GetCopy()); },
        [&] { static_cast<void>(oMoment == oNull); },
        [&] { static_cast<void>(oNull < oNull); },
        [&] { static_cast<void>(DateTime(DateTime::eNow) == oNull); },
    };
    for (std::size_t i = 0; i < std::size(aCalls); ++i)
        EXPECT_TRUE(Asserts("!m_bNull", NULL_INFO, aCalls[i])) << i;
    EXPECT_EQ(oMoment.GetAsTime_t(), LEAP_DAY);

    EXPECT_TRUE(Asserts("!m_bNull", NULL_RECEIVER_INFO, [&] { oNull.Compare(oMoment); }));
    EXPECT_TRUE(Asserts(
        "!m_bNull", NULL_RECEIVER_INFO, [&] { static_cast<void>(oNull == DateTime(DateTime::eNow)); }));
}

TEST(ValueDateTimeNull, EndsWithAnyNewMoment)
{
    ValueDateTime oMoment(LEAP_DAY, Time::ePrecisionSecond);
    oMoment.SetNull();
    EXPECT_TRUE(oMoment.IsNull());
    oMoment = *&oMoment;
    EXPECT_TRUE(oMoment.IsNull());

    // The moment itself stays; elements that cannot be taken bring it to light again.
    EXPECT_THROW(oMoment.SetElements(DateTimeElements(1969, 11, 31, 23, 59, 59, TimeZone::eGreenwich)),
        tsl::Exception);
    EXPECT_EQ(oMoment.GetAsTime_t(), LEAP_DAY);

    ValueDateTime oTarget;
    oTarget.SetElements(DateTimeElements(1970, 0, 2, TimeZone::eGreenwich));
    EXPECT_EQ(oTarget.GetAsTime_t(), 86400);
    oTarget.SetNull();
    oTarget = DateTime(1, Time::ePrecisionHour);
    EXPECT_EQ(oTarget.GetPrecision(), Time::ePrecisionHour);
    oTarget.SetNull();
    oTarget = oMoment;
    EXPECT_EQ(oTarget.GetAsTime_t(), LEAP_DAY);

    std::unique_ptr<tsl::Root> const pCopy(oMoment.GetCopy());
    EXPECT_EQ(oMoment.CompareTo(static_cast<Value &>(*pCopy)), Value::eEqual);
    EXPECT_EQ(ValueDateTime::Null().CompareTo(ValueDateTime()), Value::eEqual);
    EXPECT_EQ(ValueDateTime::Null().CompareTo(oMoment), Value::eNotComparable);
}

TEST(ValueDateTimeComparing, GoesByThePrecisionOfTheLeftSide)
{
    // The same day, the left one to the second and the right one to the day.
    DateTime const oSecond(LEAP_DAY, Time::ePrecisionSecond);
    DateTime const oDay(LEAP_DAY - 1, Time::ePrecisionDay);
    ValueDateTime const oSecondValue(oSecond);
    ValueDateTime const oDayValue(oDay);

    EXPECT_TRUE(oSecondValue > oDayValue && oSecondValue > oDay && oSecond > oDayValue);
    EXPECT_TRUE(oSecondValue != oDayValue && oSecondValue >= oDay && oSecond >= oDayValue);
    EXPECT_TRUE(oDayValue < oSecondValue && oDayValue < oSecond && oDay < oSecondValue);

    // To the day, a moment within it is later than the day as such.
    DateTime const oLater(LEAP_DAY + 1, Time::ePrecisionDay);
    EXPECT_TRUE(oSecondValue < oLater && oSecond < ValueDateTime(oLater));
    EXPECT_TRUE(oLater < oSecondValue && ValueDateTime(oLater) <= oSecond);

    EXPECT_EQ(oSecondValue.CompareTo(oDayValue), Value::eGreater);
    EXPECT_EQ(oDayValue.CompareTo(oSecondValue), Value::eLess);
    EXPECT_TRUE(oDayValue == DateTime(LEAP_DAY, Time::ePrecisionDay) && oDay == oDayValue);
    EXPECT_TRUE(oDayValue < DateTime::eNow);
}

TEST(ValueDateTimeText, ShowsNothingOfTheMoment)
{
    ValueDateTime oMoment(LEAP_DAY, Time::ePrecisionSecond);
    tsl::ValueConverter const & oConverter = oMoment.GetConverter();
    EXPECT_EQ(Write(oMoment, oConverter.GetDefaultLayout()), "");
    EXPECT_EQ(Write(ValueDateTime::Null(), oConverter.GetDefaultLayout()), "NULL");

    tsl::ValueDateTimeConverterLayout const oLayout("<${%n}${clsname}${x}>");
    EXPECT_EQ(Write(oMoment, oLayout), "<class tsl::ValueDateTime>");

    tsl::Result const oResult = oConverter.ConvertFromText("x", oMoment);
    EXPECT_EQ(oResult.GetErrorCode(), 2);
    EXPECT_EQ(oResult.GetText(), "sIdentifier unknown");
    EXPECT_EQ(oMoment.GetAsTime_t(), LEAP_DAY);
    EXPECT_TRUE(oConverter.ConvertFromText("NULL", oMoment).IsOk());
    EXPECT_TRUE(oMoment.IsNull());
}

} // namespace
