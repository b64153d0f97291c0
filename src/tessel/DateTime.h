#pragma once

#include <tessel/Export.h>
#include <tessel/Time.h>
#include <tessel/TimeSpan.h>
#include <tessel/TimeZone.h>

#include <ctime>

namespace tsl
{

class String;

/// -1, 0 or 1 if a is less than, equal to or greater than b.
TSL_EXPORT int Compare(unsigned int a, unsigned int b);

/// The calendar elements of a date and time in one time zone: year, month and so on.
///
///     DateTimeElements const oElements(2026, 0, 31, TimeZone::eGreenwich); // 31 January
///     DateTime const oDay(oElements);
///
/// The elements are plain numbers. They are not checked before they become a DateTime. One thread at a time
/// uses an object.
class TSL_EXPORT DateTimeElements
{
public:
    /// All elements 0, daylight saving unknown, precision of seconds.
    explicit DateTimeElements(TimeZone::EZone eZone) : m_eZone(eZone) {}

    /// The beginning of a day, precision of days. Months count from 0.
    DateTimeElements(int iYear, int iMonth, int iDay, TimeZone::EZone eZone);

    /// A time of a day, precision of seconds. Months count from 0.
    DateTimeElements(
        int iYear, int iMonth, int iDay, int iHour, int iMinute, int iSecond, TimeZone::EZone eZone);

    /// The finest element that counts.
    Time::Precision GetPrecision() const { return m_ePrecision; }
    void SetPrecision(Time::Precision ePrecision) { m_ePrecision = ePrecision; }

    /// Sets Time::eDLSOff, eDLSOn or eDLSUnknown. Any other number is an assertion failure, "Invalid enum",
    /// and changes nothing.
    void SetDLS(int iDLS);

    /// Copies the elements up to the precision; finer ones become 0. The zone stays. A tm_isdst that SetDLS
    /// does not accept is the same assertion failure; then only the precision is changed.
    void FromTm(std::tm const & oTm, Time::Precision ePrecision);

    /// Copies the elements to oTm; those finer than the precision become 0. Other fields of oTm, such as the
    /// day of the week, stay as they are.
    void ToTm(std::tm & oTm) const;

    /// -1, 0 or 1 if these elements are less, equal or greater. Elements finer than the precision of their
    /// object count as 0. Daylight saving and zone are ignored. Elements are compared as unsigned numbers, so
    /// negative ones are greater than all others.
    int Compare(DateTimeElements const & oOther) const;

    int m_iYear = 0;                ///< such as 2026; wraps around if the runtime library's year does not fit
    int m_iMonth = 0;               ///< 0 for January to 11
    int m_iDay = 0;                 ///< 1 to 31
    int m_iHour = 0;                ///< 0 to 23
    int m_iMinute = 0;              ///< 0 to 59
    int m_iSecond = 0;              ///< 0 to 60
    int m_iDLS = Time::eDLSUnknown; ///< see SetDLS
    TimeZone::EZone m_eZone;        ///< local or Greenwich
    Time::Precision m_ePrecision = Time::ePrecisionSecond; ///< the finest element that counts
};

/// Compare as DateTimeElements::Compare of the left operand.
inline bool operator==(DateTimeElements const & oLeft, DateTimeElements const & oRight)
{
    return oLeft.Compare(oRight) == 0;
}
inline bool operator!=(DateTimeElements const & oLeft, DateTimeElements const & oRight)
{
    return oLeft.Compare(oRight) != 0;
}
inline bool operator<(DateTimeElements const & oLeft, DateTimeElements const & oRight)
{
    return oLeft.Compare(oRight) < 0;
}
inline bool operator>(DateTimeElements const & oLeft, DateTimeElements const & oRight)
{
    return oLeft.Compare(oRight) > 0;
}
inline bool operator<=(DateTimeElements const & oLeft, DateTimeElements const & oRight)
{
    return oLeft.Compare(oRight) <= 0;
}
inline bool operator>=(DateTimeElements const & oLeft, DateTimeElements const & oRight)
{
    return oLeft.Compare(oRight) >= 0;
}

/// A point in time: a 64-bit number of seconds since 1970-01-01 00:00:00 UTC, with a precision.
///
///     DateTime oMoment(DateTime::eNow);
///     oMoment.Add(TimeSpan(1, 0, 0, 0)); // one day later
///     String sText;
///     oMoment.Format("%Y-%m-%d %H:%M", sText, TimeZone::GetLocal());
///
/// Elements finer than the precision are kept but ignored; arithmetic truncates them.
///
/// Operations that need elements can fail as the conversions of TimeZone do: with an Exception of code 2 if
/// the time cannot be converted; with an assertion failure for a zone that is neither local nor Greenwich,
/// and on a machine without a local zone. The time then stays as it was. One thread at a time uses an object.
class TSL_EXPORT DateTime
{
public:
    /// A moment by the clock of the system.
    enum EMoment : int
    {
        eNow = 0,       ///< the current second, precision of seconds
        eToday = 1,     ///< the current second, precision of days
        eYesterday = 2, ///< midnight UTC of the day before today (in UTC), precision of days
        eTomorrow = 3   ///< midnight UTC of the day after today (in UTC), precision of days
    };

    /// Any other number is an assertion failure, "Not implemented".
    DateTime(EMoment eMoment);
    DateTime(long long iTime, Time::Precision ePrecision);
    DateTime(DateTimeElements const & oElements);
    DateTime(DateTime const & oSource) = default;
    DateTime & operator=(DateTime const & oSource) = default;
    virtual ~DateTime();

    /// The finest element that counts, and the seconds since 1970-01-01 00:00:00 UTC.
    Time::Precision GetPrecision() const { return m_ePrecision; }
    long long GetAsTime_t() const { return m_iTime; }

    /// The elements in the zone of oElements, or in eZone.
    void GetElements(DateTimeElements & oElements) const;
    DateTimeElements GetElements(TimeZone::EZone eZone) const;

    /// Sets time and precision from the elements. Elements out of range are carried over: second 75 is second
    /// 15 of the next minute. After a failure the precision is changed and the time is not.
    void SetElements(DateTimeElements const & oElements);

    /// Single elements, in the ranges given at DateTimeElements. Hour, minute and second are 0, without a
    /// conversion that could fail, if they are finer than the precision.
    int GetYear(TimeZone::EZone eZone) const;
    int GetMonth(TimeZone::EZone eZone) const;
    int GetDay(TimeZone::EZone eZone) const;
    int GetHour(TimeZone::EZone eZone) const;
    int GetMinute(TimeZone::EZone eZone) const;
    int GetSecond(TimeZone::EZone eZone) const;

    /// Move the time by the parts of the span that are not finer than this object's precision. A day has
    /// 86400 seconds, whatever daylight saving does. The result is truncated to the precision in UTC: with a
    /// precision of days it is midnight UTC.
    void Add(TimeSpan const & oSpan);
    void Sub(TimeSpan const & oSpan);

    /// Writes the time as strftime does. Elements finer than the precision are written as 0. A directive that
    /// strftime does not know is safe; the runtime library mostly copies it.
    ///
    /// A text of up to 127 bytes is written; one of 128 to 3999 bytes becomes the empty text. A longer one,
    /// and an empty one, throw an Exception of code 4, and sText stays as it was. A null format counts as the
    /// empty one.
    void Format(char const * sFormat, String & sText, TimeZone::EZone eZone) const;

    /// -1, 0 or 1 if this time is before, equal to or after the other. With a precision of seconds here, the
    /// numbers of seconds are compared, otherwise the elements in UTC, each up to the precision of its
    /// object. So oOther.Compare may give another result.
    int Compare(DateTime const & oOther) const;

private:
    struct Private;

    long long m_iTime = 0;
    Time::Precision m_ePrecision = Time::ePrecisionSecond;
};

/// Compare as DateTime::Compare of the left operand.
inline bool operator==(DateTime const & oLeft, DateTime const & oRight)
{
    return oLeft.Compare(oRight) == 0;
}
inline bool operator!=(DateTime const & oLeft, DateTime const & oRight)
{
    return oLeft.Compare(oRight) != 0;
}
inline bool operator<(DateTime const & oLeft, DateTime const & oRight)
{
    return oLeft.Compare(oRight) < 0;
}
inline bool operator>(DateTime const & oLeft, DateTime const & oRight)
{
    return oLeft.Compare(oRight) > 0;
}
inline bool operator<=(DateTime const & oLeft, DateTime const & oRight)
{
    return oLeft.Compare(oRight) <= 0;
}
inline bool operator>=(DateTime const & oLeft, DateTime const & oRight)
{
    return oLeft.Compare(oRight) >= 0;
}

} // namespace tsl
