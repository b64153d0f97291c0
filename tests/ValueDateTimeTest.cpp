#include "AssertionTest.h"

using namespace tsl;
using namespace tsltest;

namespace
{

// 2024-02-29 12:34:56 in Greenwich.
constexpr long long LEAP_DAY = 1'709'210'096;

TEST(ValueDateTimeMoment, IsThatOfItsDateTime)
{
    constexpr TimeZone::EZone GREENWICH = TimeZone::eGreenwich;
    ValueDateTime oMoment(LEAP_DAY, Time::ePrecisionSecond);
    EXPECT_EQ(DateTimeElements(oMoment.GetYear(GREENWICH), oMoment.GetMonth(GREENWICH),
                  oMoment.GetDay(GREENWICH), oMoment.GetHour(GREENWICH), oMoment.GetMinute(GREENWICH),
                  oMoment.GetSecond(GREENWICH), GREENWICH),
        oMoment.GetElements(GREENWICH));
    DateTimeElements oElements(GREENWICH);
    oMoment.GetElements(oElements);
    EXPECT_EQ(oElements, DateTimeElements(2024, 1, 29, 12, 34, 56, GREENWICH));

    String sText;
    oMoment.Format("%Y-%m-%d %H:%M:%S", sText, GREENWICH);
    EXPECT_EQ(sText, "2024-02-29 12:34:56");
    oMoment.Add(TimeSpan(1, 0, 0, 4));
    EXPECT_EQ(oMoment.GetAsTime_t(), LEAP_DAY + 86404);
    oMoment.Sub(TimeSpan(2, 0, 0, 4));
    EXPECT_EQ(oMoment.GetAsTime_t(), LEAP_DAY - 86400);
}

TEST(ValueDateTimeNull, IsRefusedWhereAMomentIsNeeded)
{
    ValueDateTime oNull;
    ValueDateTime oMoment(LEAP_DAY, Time::ePrecisionSecond);
    DateTimeElements oElements(TimeZone::eGreenwich);
    String sText;
    std::function<void()> const aCalls[] = {[&] { oNull.AsDateTime(); },
        [&] { static_cast<void>(oNull.GetElements(TimeZone::eGreenwich)); },
        [&] { oNull.GetElements(oElements); },
        [&] { static_cast<void>(oNull.GetYear(TimeZone::eGreenwich)); },
        [&] { static_cast<void>(oNull.GetMonth(TimeZone::eGreenwich)); },
        [&] { static_cast<void>(oNull.GetDay(TimeZone::eGreenwich)); },
        [&] { static_cast<void>(oNull.GetHour(TimeZone::eGreenwich)); },
        [&] { static_cast<void>(oNull.GetMinute(TimeZone::eGreenwich)); },
        [&] { static_cast<void>(oNull.GetSecond(TimeZone::eGreenwich)); },
        [&] { oNull.Format("%Y", sText, TimeZone::eGreenwich); }, [&] { oNull.Add(TimeSpan(1, 0, 0, 0)); },
        [&] { oNull.Sub(TimeSpan(1, 0, 0, 0)); }, [&] { static_cast<void>(oNull.GetPrecision()); },
        [&] { static_cast<void>(oNull.GetAsTime_t()); }, [&] { ValueDateTime const oCopy(oNull); },
        [&] { oMoment = oNull; }, [&] { oMoment.Set(oNull); }, [&] { delete oNull.GetCopy(); },
        [&] { static_cast<void>(oMoment == oNull); }, [&] { static_cast<void>(oNull < oNull); },
        [&] { static_cast<void>(DateTime(DateTime::eNow) == oNull); }};
    for (auto const & fCall : aCalls)
        EXPECT_TRUE(Asserts("!m_bNull", "Value must not be NULL", fCall)) << &fCall - aCalls;
    EXPECT_EQ(oMoment.GetAsTime_t(), LEAP_DAY);

    std::string const sInfo = "Invalid operation. ValueDateTime is NULL";
    EXPECT_TRUE(Asserts("!m_bNull", sInfo, [&] { oNull.Compare(oMoment); }));
    EXPECT_TRUE(Asserts("!m_bNull", sInfo, [&] { static_cast<void>(oNull == DateTime(DateTime::eNow)); }));
}

TEST(ValueDateTimeNull, EndsWithAnyNewMoment)
{
    ValueDateTime oMoment(LEAP_DAY, Time::ePrecisionSecond);
    oMoment.SetNull();
    EXPECT_TRUE(oMoment.IsNull());
    oMoment = *&oMoment;
    EXPECT_TRUE(oMoment.IsNull());

    // The moment itself stays; elements that cannot be taken bring it to light again.
    EXPECT_THROW(
        oMoment.SetElements(DateTimeElements(1969, 11, 31, 23, 59, 59, TimeZone::eGreenwich)), Exception);
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

    std::unique_ptr<Root> const pCopy(oMoment.GetCopy());
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
    ValueConverter const & oConverter = oMoment.GetConverter();
    EXPECT_EQ(GetText(oMoment, oConverter.GetDefaultLayout()), "");
    EXPECT_EQ(GetText(ValueDateTime::Null(), oConverter.GetDefaultLayout()), "NULL");

    ValueDateTimeConverterLayout const oLayout("<${%n}${clsname}${x}>");
    EXPECT_EQ(GetText(oMoment, oLayout), "<class tsl::ValueDateTime>");

    Result const oResult = oConverter.ConvertFromText("x", oMoment);
    EXPECT_EQ(oResult.GetErrorCode(), 2);
    EXPECT_EQ(oResult.GetText(), "sIdentifier unknown");
    EXPECT_EQ(oMoment.GetAsTime_t(), LEAP_DAY);
    EXPECT_TRUE(oConverter.ConvertFromText("NULL", oMoment).IsOk());
    EXPECT_TRUE(oMoment.IsNull());
}

} // namespace
