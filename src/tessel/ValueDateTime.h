#pragma once

#include <tessel/DateTime.h>
#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Value.h>

#include <compare>

namespace tsl
{

/// The nullable moment.
///
/// A null value is there to be asked and to be set, and for nothing else: whatever needs the moment, being
/// copied included, fails the assertion "!m_bNull" with "Value must not be NULL". All else is told at
/// DateTime, to which the operations of the same names go.
///
/// It has no text form of its own; Format gives one.
class TSL_EXPORT ValueDateTime : public Described<ValueDateTime, Value>
{
public:
    /// Null.
    ValueDateTime() : m_oDateTime(DateTime::eNow) {}
    ValueDateTime(DateTime::EMoment eMoment) : m_oDateTime(eMoment), m_bNull(false) {}
    ValueDateTime(long long iTime, Time::Precision ePrecision)
        : m_oDateTime(iTime, ePrecision), m_bNull(false)
    {
    }
    ValueDateTime(DateTime oDateTime) : m_oDateTime(oDateTime), m_bNull(false) {}
    ValueDateTime(ValueDateTime const & oSource);

    ValueDateTime & operator=(ValueDateTime const & oSource);
    ValueDateTime & operator=(DateTime const & oDateTime);

    /// Makes the value non-null, also if the elements cannot be taken: the moment then is the former one.
    void SetElements(DateTimeElements const & oElements);

    bool IsNull() const override { return m_bNull; }
    void SetNull() override { m_bNull = true; }
    ValueConverter const & GetConverter() const override;

    /// The shared null moment.
    static ValueDateTime const & Null();

    DateTime const & AsDateTime() const;
    DateTimeElements GetElements(TimeZone::EZone eZone) const { return AsDateTime().GetElements(eZone); }
    void GetElements(DateTimeElements & oElements) const { AsDateTime().GetElements(oElements); }
    int GetYear(TimeZone::EZone eZone) const { return AsDateTime().GetYear(eZone); }
    int GetMonth(TimeZone::EZone eZone) const { return AsDateTime().GetMonth(eZone); }
    int GetDay(TimeZone::EZone eZone) const { return AsDateTime().GetDay(eZone); }
    int GetHour(TimeZone::EZone eZone) const { return AsDateTime().GetHour(eZone); }
    int GetMinute(TimeZone::EZone eZone) const { return AsDateTime().GetMinute(eZone); }
    int GetSecond(TimeZone::EZone eZone) const { return AsDateTime().GetSecond(eZone); }
    void Format(char const * sFormat, String & sOut, TimeZone::EZone eZone) const;
    void Add(TimeSpan const & oSpan);
    void Sub(TimeSpan const & oSpan);
    Time::Precision GetPrecision() const { return AsDateTime().GetPrecision(); }
    long long GetAsTime_t() const { return AsDateTime().GetAsTime_t(); }

    /// As DateTime::Compare. A null receiver fails the assertion "!m_bNull" with "Invalid operation.
    /// ValueDateTime is NULL"; a null argument fails first.
    int Compare(DateTime const & oOther) const;
    int Compare(ValueDateTime const & oOther) const { return Compare(oOther.AsDateTime()); }

protected:
    void DoCopy(Root const & oSource) override;
    eCompare DoCompareTo(Value const & oOther) const override;

private:
    DateTime m_oDateTime;
    bool m_bNull = true;
};

extern template ClassDescription const & Described<ValueDateTime, Value>::GetStaticClassDesc();

/// By Compare. A DateTime on either side stands for a ValueDateTime.
inline bool operator==(ValueDateTime const & oLeft, ValueDateTime const & oRight)
{
    return oLeft.Compare(oRight) == 0;
}
inline std::weak_ordering operator<=>(ValueDateTime const & oLeft, ValueDateTime const & oRight)
{
    return oLeft.Compare(oRight) <=> 0;
}

} // namespace tsl
