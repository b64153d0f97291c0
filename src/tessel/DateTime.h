#pragma once

#include <tessel/Export.h>
#include <tessel/Time.h>
#include <tessel/TimeSpan.h>
#include <tessel/TimeZone.h>

#include <ctime>

namespace tsl
{

class String;

/// -1, 0 or 1 for a number below, equal to or above the other.
TSL_EXPORT int Compare(unsigned int a, unsigned int b);

/// A moment broken into year, month and so on, as the clocks of one time zone show it.
///
/// The elements are plain numbers, which nobody checks before they become a DateTime. An object is used
/// by one thread at a time.
class TSL_EXPORT DateTimeElements
{
public:
    /// All elements 0, daylight saving unknown, with a precision of seconds.
    explicit DateTimeElements(TimeZone::EZone eZone) : m_eZone(eZone) {}

    /// The beginning of a day, with a precision of days. Months count from 0.
    DateTimeElements(int iYear, int iMonth, int iDay, TimeZone::EZone eZone);

    /// With a precision of seconds. Months count from 0.
    DateTimeElements(
        int iYear, int iMonth, int iDay, int iHour, int iMinute, int iSecond, TimeZone::EZone eZone);

    Time::Precision GetPrecision() const { return m_ePrecision; }
    void SetPrecision(Time::Precision ePrecision) { m_ePrecision = ePrecision; }

    /// Time::eDLSOff, eDLSOn or eDLSUnknown. Anything else is an assertion failure, "Invalid enum", and
    /// changes nothing.
    void SetDLS(int iDLS);

    /// Takes the elements that the precision counts, the finer ones become 0. The zone stays. A tm_isdst
    /// that SetDLS refuses is the same assertion failure; the precision then is the new one, and all elements are
    /// the former ones.
    void FromTm(std::tm const & oTm, Time::Precision ePrecision);

    /// The way back. What else a tm has, such as the day of the week, is left as it was.
    void ToTm(std::tm & oTm) const;

    /// -1, 0 or 1 for elements below, equal to or above the others. An element finer than its own side's
    /// precision counts as 0; daylight saving and zone do not count. Negative numbers are above all others.
    int Compare(DateTimeElements const & oOther) const;

    int m_iYear = 0;   ///< such as 2026; wraps around where the runtime library counts further
    int m_iMonth = 0;  ///< 0 for January to 11
    int m_iDay = 0;    ///< 1 to 31
    int m_iHour = 0;   ///< 0 to 23
    int m_iMinute = 0; ///< 0 to 59
    int m_iSecond = 0; ///< 0 to 60
    int m_iDLS = Time::eDLSUnknown;
    TimeZone::EZone m_eZone;
    Time::Precision m_ePrecision = Time::ePrecisionSecond;
};

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

/// A moment: a 64-bit count of seconds since 1970-01-01 00:00:00 UTC, and how much of it counts.
///
/// What is finer than the precision is kept and only looked past, until arithmetic cuts it off. Whatever
/// needs elements can fail as TimeZone's conversions do: with an Exception of code 2 for a moment that
/// cannot be converted, with an assertion failure for a zone that is neither local nor Greenwich or on a
/// machine without a local zone. The moment then stays as it was.
///
/// An object is used by one thread at a time.
class TSL_EXPORT DateTime
{
public:
    enum EMoment : int
    {
        eNow = 0,       ///< with a precision of seconds
        eToday = 1,     ///< the current second as well, but with a precision of days, as the next two
        eYesterday = 2, ///< midnight in Greenwich of the day before the current one there
        eTomorrow = 3   ///< midnight in Greenwich of the day after
    };

    /// Any other number is an assertion failure, "Not implemented".
    DateTime(EMoment eMoment);
    DateTime(long long iTime, Time::Precision ePrecision);
    DateTime(DateTimeElements const & oElements);
    DateTime(DateTime const & oSource) = default;
    DateTime & operator=(DateTime const & oSource) = default;
    virtual ~DateTime();

    Time::Precision GetPrecision() const { return m_ePrecision; }
    long long GetAsTime_t() const { return m_iTime; }

    /// The elements in the zone that the argument has, or in the given one.
    void GetElements(DateTimeElements & oElements) const;
    DateTimeElements GetElements(TimeZone::EZone eZone) const;

    /// Takes moment and precision from the elements. Overflows such as second 75 count on. After a failure the
    /// precision is the new one, and the moment the old one.
    void SetElements(DateTimeElements const & oElements);

    /// Single elements, in the ranges that DateTimeElements tells. Elements that the precision does not
    /// count are 0, without a conversion.
    int GetYear(TimeZone::EZone eZone) const;
    int GetMonth(TimeZone::EZone eZone) const;
    int GetDay(TimeZone::EZone eZone) const;
    int GetHour(TimeZone::EZone eZone) const;
    int GetMinute(TimeZone::EZone eZone) const;
    int GetSecond(TimeZone::EZone eZone) const;

    /// Move the moment by those parts of the span that this object's precision counts. A day has 86400
    /// seconds, whatever daylight saving does. What is finer than the precision is cut off: a moment with
    /// a precision of days ends up at midnight in Greenwich.
    void Add(TimeSpan const & oSpan);
    void Sub(TimeSpan const & oSpan);

    /// Writes the moment as strftime does, with the elements that the precision does not count as 0.
    /// A directive that strftime does not know, or half of one at the end, does no harm; what becomes of it
    /// is left to the runtime library, which mostly lets it stand.
    ///
    /// Up to 127 bytes are delivered; of 128 to 3999 bytes becomes the empty text. A longer text and an
    /// empty one throw an Exception of code 4, and the text stays; a null format counts as an empty one.
    void Format(char const * sFormat, String & sText, TimeZone::EZone eZone) const;

    /// -1, 0 or 1 for a moment before, equal to or after the other. If this object's precision is seconds,
    /// the bare times are compared, otherwise the elements, each to its own precision. So the answer may
    /// differ from that of the other object.
    int Compare(DateTime const & oOther) const;

private:
    struct Private;

    long long m_iTime = 0;
    Time::Precision m_ePrecision = Time::ePrecisionSecond;
};

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
