#pragma once

#include <tessel/DateTime.h>
#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Value.h>

#include <compare>

namespace tsl
{

/// A DateTime that can be null.
///
///     ValueDateTime oStart; // null
///     oStart = DateTime(DateTime::eNow);
///     String sText;
///     oStart.Format("%H:%M", sText, TimeZone::GetLocal());
///
/// A null value can only be tested and set. Everything else, also copying it, fails the assertion "!m_bNull"
/// with "Value must not be NULL". The operations call those of DateTime with the same names, where they are
/// described.
///
/// Its converter writes no time; use Format. One thread at a time uses an object.
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

    /// Replace the time. The right operand must not be null.
    ValueDateTime & operator=(ValueDateTime const & oSource);
    ValueDateTime & operator=(DateTime const & oDateTime);

    /// Sets the time from the elements. Makes the value non-null, also after a failure, which leaves the
    /// former time.
    void SetElements(DateTimeElements const & oElements);

    bool IsNull() const override { return m_bNull; }
    void SetNull() override { m_bNull = true; }
    ValueConverter const & GetConverter() const override;

    /// A shared null value.
    static ValueDateTime const & Null();

    /// The time, which must not be null. The reference is valid as long as this object.
    DateTime const & AsDateTime() const;

    /// See DateTime. The value must not be null.
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

    /// The same as DateTime::Compare. If this value is null, the assertion "!m_bNull" fails with "Invalid
    /// operation. ValueDateTime is NULL"; a null argument fails first, with "Value must not be NULL".
    int Compare(DateTime const & oOther) const;
    int Compare(ValueDateTime const & oOther) const { return Compare(oOther.AsDateTime()); }

protected:
    void DoCopy(Root const & oSource) override;
    eCompare DoCompareTo(Value const & oOther) const override;

private:
    DateTime m_oDateTime;
    bool m_bNull = true;
};

template<>
TSL_EXPORT ClassDescription const & Described<ValueDateTime, Value>::GetStaticClassDesc();

/// Compare as ValueDateTime::Compare. A DateTime may be used for either operand.
inline bool operator==(ValueDateTime const & oLeft, ValueDateTime const & oRight)
{
    return oLeft.Compare(oRight) == 0;
}
inline std::weak_ordering operator<=>(ValueDateTime const & oLeft, ValueDateTime const & oRight)
{
    return oLeft.Compare(oRight) <=> 0;
}

} // namespace tsl
