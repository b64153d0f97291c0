#include <tessel/DateTime.h>

#include "platform/Calendar.h"
#include "platform/Clock.h"

#include <tessel/Assertion.h>
#include <tessel/Exception.h>
#include <tessel/String.h>

#include <cstddef>
#include <cstdint>
#include <utility>

namespace tsl
{

namespace
{

// A text that does not fit into TEXT_SIZE becomes empty. TEXT_SIZE_MAX decides whether that is a failure.
constexpr std::size_t TEXT_SIZE = 128;
constexpr std::size_t TEXT_SIZE_MAX = 4000;

/// The elements finer than a day.
struct TimeOfDay
{
    int iHour;
    int iMinute;
    int iSecond;
};

/// Sets the elements that are finer than the precision to 0.
TimeOfDay Truncate(TimeOfDay const & oTime, Time::Precision ePrecision)
{
    return {ePrecision >= Time::ePrecisionHour ? oTime.iHour : 0,
        ePrecision >= Time::ePrecisionMinute ? oTime.iMinute : 0,
        ePrecision == Time::ePrecisionSecond ? oTime.iSecond : 0};
}

void CheckDLS(int iDLS)
{
    if (iDLS != Time::eDLSOff && iDLS != Time::eDLSOn && iDLS != Time::eDLSUnknown)
        XAssertionFailed("dls==Time::eDLSOff || dls==Time::eDLSOn || dls==Time::eDLSUnknown", "Invalid enum");
}

/// Throws an Exception if the text is empty or does not fit into TEXT_SIZE_MAX.
void ThrowIfUnformattable(char const * sFormat, std::tm const & oTm)
{
    char aText[TEXT_SIZE_MAX];
    if (Platform::FormatTime(aText, sizeof aText, sFormat, oTm) != 0)
        return;

    String sText("Function strftime cannot format DateTime object. Formatted string exceeds size of ");
    sText << static_cast<unsigned int>(TEXT_SIZE_MAX) << " chars!";
    Exception::Throw(MakeResult(ERR::eOutOfRange, sText));
}

} // namespace

int Compare(unsigned int a, unsigned int b)
{
    return a == b ? 0 : a > b ? 1 : -1;
}

DateTimeElements::DateTimeElements(int iYear, int iMonth, int iDay, TimeZone::EZone eZone)
    : DateTimeElements(iYear, iMonth, iDay, 0, 0, 0, eZone)
{
    m_ePrecision = Time::ePrecisionDay;
}

DateTimeElements::DateTimeElements(
    int iYear, int iMonth, int iDay, int iHour, int iMinute, int iSecond, TimeZone::EZone eZone)
    : m_iYear(iYear),
      m_iMonth(iMonth),
      m_iDay(iDay),
      m_iHour(iHour),
      m_iMinute(iMinute),
      m_iSecond(iSecond),
      m_eZone(eZone)
{
}

void DateTimeElements::SetDLS(int iDLS)
{
    CheckDLS(iDLS);
    m_iDLS = iDLS;
}

void DateTimeElements::FromTm(std::tm const & oTm, Time::Precision ePrecision)
{
    m_ePrecision = ePrecision;
    SetDLS(oTm.tm_isdst);

    // A year that wraps around becomes right again in ToTm, and is compared rightly as an unsigned number.
    m_iYear = static_cast<int>(std::int64_t{oTm.tm_year} + Platform::YEAR_BASE);
    m_iMonth = oTm.tm_mon;
    m_iDay = oTm.tm_mday;

    TimeOfDay const oTime = Truncate({oTm.tm_hour, oTm.tm_min, oTm.tm_sec}, ePrecision);
    m_iHour = oTime.iHour;
    m_iMinute = oTime.iMinute;
    m_iSecond = oTime.iSecond;
}

void DateTimeElements::ToTm(std::tm & oTm) const
{
    oTm.tm_isdst = m_iDLS;
    oTm.tm_year = static_cast<int>(std::int64_t{m_iYear} - Platform::YEAR_BASE);
    oTm.tm_mon = m_iMonth;
    oTm.tm_mday = m_iDay;

    TimeOfDay const oTime = Truncate({m_iHour, m_iMinute, m_iSecond}, m_ePrecision);
    oTm.tm_hour = oTime.iHour;
    oTm.tm_min = oTime.iMinute;
    oTm.tm_sec = oTime.iSecond;
}

int DateTimeElements::Compare(DateTimeElements const & oOther) const
{
    TimeOfDay const oTime = Truncate({m_iHour, m_iMinute, m_iSecond}, m_ePrecision);
    TimeOfDay const oOtherTime =
        Truncate({oOther.m_iHour, oOther.m_iMinute, oOther.m_iSecond}, oOther.m_ePrecision);
    std::pair<int, int> const aElements[] = {{m_iYear, oOther.m_iYear}, {m_iMonth, oOther.m_iMonth},
        {m_iDay, oOther.m_iDay}, {oTime.iHour, oOtherTime.iHour}, {oTime.iMinute, oOtherTime.iMinute},
        {oTime.iSecond, oOtherTime.iSecond}};

    for (auto const & [iOwn, iOther] : aElements)
    {
        int const iOrder = tsl::Compare(static_cast<unsigned int>(iOwn), static_cast<unsigned int>(iOther));
        if (iOrder != 0)
            return iOrder;
    }
    return 0;
}

DateTime::DateTime(EMoment eMoment) : m_iTime(Platform::GetTime()), m_ePrecision(Time::ePrecisionDay)
{
    switch (eMoment)
    {
    case eNow:
        m_ePrecision = Time::ePrecisionSecond;
        return;
    case eToday:
        return;
    case eYesterday:
        Add(TimeSpan(-1, 0, 0, 0));
        return;
    case eTomorrow:
        Add(TimeSpan(1, 0, 0, 0));
        return;
    }
    XAssertionFailed("false", "Not implemented");
}

DateTime::DateTime(long long iTime, Time::Precision ePrecision) : m_iTime(iTime), m_ePrecision(ePrecision) {}

DateTime::DateTime(DateTimeElements const & oElements)
{
    SetElements(oElements);
}

DateTime::~DateTime() = default;

void DateTime::GetElements(DateTimeElements & oElements) const
{
    std::tm oTm{};
    TimeZone::ConvertToZone(m_iTime, oElements.m_eZone, oTm);
    oElements.FromTm(oTm, m_ePrecision);
}

DateTimeElements DateTime::GetElements(TimeZone::EZone eZone) const
{
    DateTimeElements oElements(eZone);
    GetElements(oElements);
    return oElements;
}

void DateTime::SetElements(DateTimeElements const & oElements)
{
    m_ePrecision = oElements.GetPrecision();
    std::tm oTm{};
    oElements.ToTm(oTm);
    TimeZone::ConvertFromZone(oTm, oElements.m_eZone, m_iTime);
}

int DateTime::GetYear(TimeZone::EZone eZone) const
{
    return GetElements(eZone).m_iYear;
}

int DateTime::GetMonth(TimeZone::EZone eZone) const
{
    return GetElements(eZone).m_iMonth;
}

int DateTime::GetDay(TimeZone::EZone eZone) const
{
    return GetElements(eZone).m_iDay;
}

int DateTime::GetHour(TimeZone::EZone eZone) const
{
    return m_ePrecision < Time::ePrecisionHour ? 0 : GetElements(eZone).m_iHour;
}

int DateTime::GetMinute(TimeZone::EZone eZone) const
{
    return m_ePrecision < Time::ePrecisionMinute ? 0 : GetElements(eZone).m_iMinute;
}

int DateTime::GetSecond(TimeZone::EZone eZone) const
{
    return m_ePrecision < Time::ePrecisionSecond ? 0 : GetElements(eZone).m_iSecond;
}

struct TSL_HIDDEN DateTime::Private
{
    static void Move(DateTime & oMoment, TimeSpan const & oSpan, int iDirection)
    {
        // No overflow: the parts of a span are at most 59 s, 59 min, 23 h and the days of an int of seconds.
        DateTimeElements oElements = oMoment.GetElements(TimeZone::eGreenwich);
        switch (oMoment.m_ePrecision)
        {
        case Time::ePrecisionSecond:
            oElements.m_iSecond += iDirection * oSpan.GetSeconds();
            [[fallthrough]];
        case Time::ePrecisionMinute:
            oElements.m_iMinute += iDirection * oSpan.GetMinutes();
            [[fallthrough]];
        case Time::ePrecisionHour:
            oElements.m_iHour += iDirection * oSpan.GetHours();
            [[fallthrough]];
        case Time::ePrecisionDay:
            oElements.m_iDay += iDirection * oSpan.GetDays();
        }
        oMoment.SetElements(oElements);
    }
};

void DateTime::Add(TimeSpan const & oSpan)
{
    Private::Move(*this, oSpan, 1);
}

void DateTime::Sub(TimeSpan const & oSpan)
{
    Private::Move(*this, oSpan, -1);
}

void DateTime::Format(char const * sFormat, String & sText, TimeZone::EZone eZone) const
{
    // The truncated elements are stored in the same tm, which also has the day of the week and the zone's
    // name.
    std::tm oTm{};
    TimeZone::ConvertToZone(m_iTime, eZone, oTm);
    DateTimeElements oElements(eZone);
    oElements.FromTm(oTm, m_ePrecision);
    oElements.ToTm(oTm);

    char const * const sDirectives = sFormat ? sFormat : "";
    char aText[TEXT_SIZE];
    if (Platform::FormatTime(aText, sizeof aText, sDirectives, oTm) == 0)
    {
        ThrowIfUnformattable(sDirectives, oTm);
        // After a failure of strftime the content of the buffer is unspecified.
        aText[0] = '\0';
    }
    sText = aText;
}

int DateTime::Compare(DateTime const & oOther) const
{
    if (m_ePrecision == Time::ePrecisionSecond)
        return m_iTime == oOther.m_iTime ? 0 : m_iTime > oOther.m_iTime ? 1 : -1;
    return GetElements(TimeZone::eGreenwich).Compare(oOther.GetElements(TimeZone::eGreenwich));
}

} // namespace tsl
