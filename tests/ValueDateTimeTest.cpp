#include "TestPrelude.h"

using namespace tsl;
using namespace tsltest;

namespace
{

constexpr TimeZone::EZone GREENWICH = TimeZone::eGreenwich;

// 2024-02-29 12:34:56 in Greenwich.
constexpr long long LEAP_DAY = 1'709'210'096;

TEST(ValueDateTimeMoment, IsThatOfItsDateTime)
{
    ValueDateTime oMoment(LEAP_DAY, Time::ePrecisionSecond);
    EXPECT_EQ(DateTimeElements(oMoment.GetYear(GREENWICH), oMoment.GetMonth(GREENWICH),
                  oMoment.GetDay(GREENWICH), oMoment.GetHour(GREENWICH), oMoment.GetMinute(GREENWICH),
                  oMoment.GetSecond(GREENWICH), GREENWICH),
        DateTimeElements(2024, 1, 29, 12, 34, 56, GREENWICH));

    oMoment.Add(TimeSpan(1, 0, 0, 4));
    oMoment.Sub(TimeSpan(2, 0, 0, 0));
    EXPECT_EQ(oMoment.GetAsTime_t(), LEAP_DAY - 86396);
    String sText;
    oMoment.Format("%d %H:%M:%S", sText, GREENWICH);
    EXPECT_EQ(sText, "28 12:35:00");
}

TEST(ValueDateTimeNull, IsRefusedWhereAMomentIsNeeded)
{
    ValueDateTime oNull;
    ValueDateTime oMoment(LEAP_DAY, Time::ePrecisionSecond);
    String sText;
    EXPECT_TRUE(AllAssert("!m_bNull", "Value must not be NULL",
        {[&] { return oNull.AsDateTime(); }, [&] { return oNull.GetYear(GREENWICH); },
            [&] { oNull.Format("%Y", sText, GREENWICH); }, [&] { oNull.Add(TimeSpan(1, 0, 0, 0)); },
            [&] { oNull.Sub(TimeSpan(1, 0, 0, 0)); }, [&] { ValueDateTime const oCopy(oNull); },
            [&] { oMoment = oNull; }, [&] { oMoment.Set(oNull); }, [&] { delete oNull.GetCopy(); },
            [&] { return oMoment == oNull; }, [&] { return DateTime(DateTime::eNow) < oNull; }}));
    EXPECT_EQ(oMoment.GetAsTime_t(), LEAP_DAY);
    EXPECT_TRUE(Asserts("!m_bNull", "Invalid operation. ValueDateTime is NULL",
        [&] { return oNull == DateTime(DateTime::eNow); }));
}

TEST(ValueDateTimeNull, EndsWithAnyNewMoment)
{
    ValueDateTime oMoment(LEAP_DAY, Time::ePrecisionSecond);
    oMoment.SetNull();
    // The moment itself stays; elements that cannot be taken make it visible again.
    EXPECT_THROW(oMoment.SetElements(DateTimeElements(1969, 11, 31, 23, 59, 59, GREENWICH)), Exception);
    EXPECT_EQ(oMoment.GetAsTime_t(), LEAP_DAY);

    ValueDateTime oTarget;
    oTarget.SetElements(DateTimeElements(1970, 0, 2, GREENWICH));
    EXPECT_EQ(oTarget.GetAsTime_t(), 86400);
    oTarget.SetNull();
    oTarget = DateTime(1, Time::ePrecisionHour);
    EXPECT_EQ(oTarget.GetPrecision(), Time::ePrecisionHour);
    oTarget.SetNull();
    oTarget = oMoment;
    EXPECT_EQ(oTarget.CompareTo(oMoment), Value::eEqual);
}

TEST(ValueDateTimeComparing, GoesByThePrecisionOfTheLeftSide)
{
    // The same day, the left one to the second and the right one to the day.
    ValueDateTime const oSecond(LEAP_DAY, Time::ePrecisionSecond);
    DateTime const oDay(LEAP_DAY - 1, Time::ePrecisionDay);
    EXPECT_EQ(GetOrder(oSecond, oDay), 1);
    EXPECT_EQ(GetOrder(oDay, oSecond), -1);
    EXPECT_EQ(ValueDateTime(oDay).CompareTo(oSecond), Value::eLess);
    EXPECT_EQ(oDay, ValueDateTime(LEAP_DAY, Time::ePrecisionDay));
}

TEST(ValueDateTimeText, ShowsNothingOfTheMoment)
{
    ValueDateTime oMoment(LEAP_DAY, Time::ePrecisionSecond);
    ValueConverter const & oConverter = oMoment.GetConverter();
    EXPECT_EQ(GetText(oMoment) + GetText(ValueDateTime::Null()), "NULL");
    EXPECT_EQ(GetText(oMoment, ValueDateTimeConverterLayout("<${%n}${clsname}${x}>")),
        "<class tsl::ValueDateTime>");
    Result const oResult = oConverter.ConvertFromText("x", oMoment);
    EXPECT_EQ(oResult.GetErrorCode(), 2);
    EXPECT_EQ(oResult.GetText(), "sIdentifier unknown");
    EXPECT_EQ(oMoment.GetAsTime_t(), LEAP_DAY);
    EXPECT_TRUE(oConverter.ConvertFromText("NULL", oMoment).IsOk());
    EXPECT_TRUE(oMoment.IsNull());
}

} // namespace
