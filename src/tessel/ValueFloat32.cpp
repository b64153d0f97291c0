#include <tessel/ValueFloat32.h>

#include "LastingObject.h"

#include <tessel/Assertion.h>
#include <tessel/ValueFloatConverter.h>

namespace tsl
{

static void AssertNotNull(bool bNull)
{
    if (bNull)
        XAssertionFailed("!m_bNull", "Value must not be NULL");
}

ValueFloat32 & ValueFloat32::operator=(float const & fValue)
{
    m_fValue = fValue;
    m_bNull = false;
    return *this;
}

template<>
constexpr ClassSource CLASS_SOURCE<ValueFloat32>{};
template<>
ClassDescription const & Described<ValueFloat32, Value>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

void ValueFloat32::SetNull()
{
    m_fValue = 0.0f;
    m_bNull = true;
}

ValueConverter const & ValueFloat32::GetConverter() const
{
    return LastingObject<ValueFloatConverter>();
}

ValueFloat32 const & ValueFloat32::Null()
{
    return LastingObject<ValueFloat32>();
}

float ValueFloat32::AsFloat32() const
{
    AssertNotNull(m_bNull);
    return m_fValue;
}

ValueFloat32 & ValueFloat32::operator+=(float const & fRight)
{
    m_fValue += fRight;
    return *this;
}

ValueFloat32 & ValueFloat32::operator-=(float const & fRight)
{
    m_fValue -= fRight;
    return *this;
}

ValueFloat32 & ValueFloat32::operator*=(float const & fRight)
{
    m_fValue *= fRight;
    return *this;
}

ValueFloat32 & ValueFloat32::operator/=(float const & fRight)
{
    m_fValue /= fRight;
    return *this;
}

int ValueFloat32::Compare(float const & fOther) const
{
    AssertNotNull(m_bNull);

    // In double precision: in float, adding the tolerance to a large number would not change it.
    double const fNumber = m_fValue;
    double const fTolerance = GetTolerance();
    return fOther > fNumber + fTolerance ? -1 : fOther < fNumber - fTolerance ? 1 : 0;
}

void ValueFloat32::DoCopy(Root const & oSource)
{
    *this = static_cast<ValueFloat32 const &>(oSource);
}

Value::eCompare ValueFloat32::DoCompareTo(Value const & oOther) const
{
    float const fOther = static_cast<ValueFloat32 const &>(oOther).m_fValue;
    return m_fValue > fOther ? eGreater : m_fValue < fOther ? eLess : eEqual;
}

ValueString & operator<<(ValueString & sLeft, ValueFloat32 const & f)
{
    if (f.IsNull())
        XAssertionFailed("!f.IsNull()", "Invalid operation. Value is NULL");
    return f.AddAsString(sLeft);
}

} // namespace tsl
