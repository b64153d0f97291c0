#include <tessel/ValueInt32.h>

#include "CompareResult.h"
#include "LastingObject.h"

#include <tessel/Assertion.h>
#include <tessel/ValueIntegerConverter.h>

#include <cstdint>

namespace tsl
{

/// The lower 32 bits of a number, in two's complement.
static int Wrap(std::int64_t iNumber)
{
    return static_cast<int>(static_cast<std::uint32_t>(iNumber));
}

static void AssertNotZero(int iDivisor)
{
    if (iDivisor == 0)
        XAssertionFailed("iDivisor != 0", "Invalid operation. Division of ValueInt32 by zero");
}

ValueInt32 & ValueInt32::operator=(ValueInt32 const & oSource)
{
    Set(oSource);
    return *this;
}

ValueInt32 & ValueInt32::operator=(int const & iValue)
{
    m_iValue = iValue;
    m_bNull = false;
    return *this;
}

template<>
constexpr ClassSource CLASS_SOURCE<ValueInt32>{};
template<>
ClassDescription const & Described<ValueInt32, Value>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

void ValueInt32::SetNull()
{
    m_iValue = 0;
    m_bNull = true;
}

ValueConverter const & ValueInt32::GetConverter() const
{
    return LastingObject<ValueIntegerConverter>();
}

ValueInt32 const & ValueInt32::Null()
{
    return LastingObject<ValueInt32>();
}

ValueInt32 & ValueInt32::operator+=(int const & iRight)
{
    m_iValue = Wrap(std::int64_t{m_iValue} + iRight);
    return *this;
}

ValueInt32 & ValueInt32::operator-=(int const & iRight)
{
    m_iValue = Wrap(std::int64_t{m_iValue} - iRight);
    return *this;
}

ValueInt32 & ValueInt32::operator*=(int const & iRight)
{
    m_iValue = Wrap(std::int64_t{m_iValue} * iRight);
    return *this;
}

ValueInt32 & ValueInt32::operator/=(int const & iRight)
{
    AssertNotZero(iRight);
    m_iValue = Wrap(std::int64_t{m_iValue} / iRight);
    return *this;
}

ValueInt32 & ValueInt32::operator%=(int const & iRight)
{
    AssertNotZero(iRight);
    m_iValue = Wrap(std::int64_t{m_iValue} % iRight);
    return *this;
}

ValueInt32 & ValueInt32::operator&=(int const & iRight)
{
    m_iValue &= iRight;
    return *this;
}

ValueInt32 & ValueInt32::operator|=(int const & iRight)
{
    m_iValue |= iRight;
    return *this;
}

ValueInt32 & ValueInt32::operator^=(int const & iRight)
{
    m_iValue ^= iRight;
    return *this;
}

ValueInt32 ValueInt32::operator++(int)
{
    ValueInt32 const oFormer(m_iValue);
    ++*this;
    return oFormer;
}

ValueInt32 ValueInt32::operator--(int)
{
    ValueInt32 const oFormer(m_iValue);
    --*this;
    return oFormer;
}

ValueInt32 ValueInt32::operator-() const
{
    return Wrap(-std::int64_t{m_iValue});
}

int ValueInt32::Compare(int const & iOther) const
{
    if (m_bNull)
        XAssertionFailed("!m_bNull", "Invalid operation. ValueInt32 is NULL");
    return m_iValue < iOther ? -1 : m_iValue > iOther ? 1 : 0;
}

void ValueInt32::DoCopy(Root const & oSource)
{
    ValueInt32 const & oNumber = static_cast<ValueInt32 const &>(oSource);
    m_iValue = oNumber.m_iValue;
    m_bNull = oNumber.m_bNull;
}

Value::eCompare ValueInt32::DoCompareTo(Value const & oOther) const
{
    return ToCompareResult(Compare(static_cast<ValueInt32 const &>(oOther).m_iValue));
}

ValueString & operator<<(ValueString & sLeft, ValueInt32 const & i)
{
    if (i.IsNull())
        XAssertionFailed("!i.IsNull()", "Invalid operation. Value is NULL");
    return i.AddAsString(sLeft);
}

} // namespace tsl
