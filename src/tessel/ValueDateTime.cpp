#include <tessel/ValueDateTime.h>

#include "CompareResult.h"
#include "LastingObject.h"

#include <tessel/Assertion.h>
#include <tessel/ValueDateTimeConverter.h>

namespace tsl
{

static void AssertNotNull(bool bNull, char const * sInfo)
{
    if (bNull)
        XAssertionFailed("!m_bNull", sInfo);
}

ValueDateTime::ValueDateTime(ValueDateTime const & oSource)
    : Described(oSource), m_oDateTime(oSource.AsDateTime()), m_bNull(false)
{
}

ValueDateTime & ValueDateTime::operator=(ValueDateTime const & oSource)
{
    if (&oSource != this)
        *this = oSource.AsDateTime();
    return *this;
}

ValueDateTime & ValueDateTime::operator=(DateTime const & oDateTime)
{
    m_oDateTime = oDateTime;
    m_bNull = false;
    return *this;
}

void ValueDateTime::SetElements(DateTimeElements const & oElements)
{
    m_bNull = false;
    m_oDateTime.SetElements(oElements);
}

template<>
constexpr ClassSource CLASS_SOURCE<ValueDateTime>{};
template<>
ClassDescription const & Described<ValueDateTime, Value>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

ValueConverter const & ValueDateTime::GetConverter() const
{
    return LastingObject<ValueDateTimeConverter>();
}

ValueDateTime const & ValueDateTime::Null()
{
    return LastingObject<ValueDateTime>();
}

DateTime const & ValueDateTime::AsDateTime() const
{
    AssertNotNull(m_bNull, "Value must not be NULL");
    return m_oDateTime;
}

void ValueDateTime::Format(char const * sFormat, String & sOut, TimeZone::EZone eZone) const
{
    AsDateTime().Format(sFormat, sOut, eZone);
}

void ValueDateTime::Add(TimeSpan const & oSpan)
{
    AssertNotNull(m_bNull, "Value must not be NULL");
    m_oDateTime.Add(oSpan);
}

void ValueDateTime::Sub(TimeSpan const & oSpan)
{
    AssertNotNull(m_bNull, "Value must not be NULL");
    m_oDateTime.Sub(oSpan);
}

int ValueDateTime::Compare(DateTime const & oOther) const
{
    AssertNotNull(m_bNull, "Invalid operation. ValueDateTime is NULL");
    return m_oDateTime.Compare(oOther);
}

void ValueDateTime::DoCopy(Root const & oSource)
{
    *this = static_cast<ValueDateTime const &>(oSource);
}

Value::eCompare ValueDateTime::DoCompareTo(Value const & oOther) const
{
    return ToCompareResult(Compare(static_cast<ValueDateTime const &>(oOther)));
}

} // namespace tsl
