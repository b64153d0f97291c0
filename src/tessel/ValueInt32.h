#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Value.h>
#include <tessel/ValueString.h>

#include <compare>

namespace tsl
{

/// A 32-bit integer that can be null.
///
///     ValueInt32 oCount(5);
///     oCount += 2;
///     if (oCount > 6)
///         iTotal = oCount.AsInt32(); // 7
///
/// Arithmetic ignores the null state: a null operand counts as 0, and the result has the state of the left
/// operand. Results wrap around in two's complement, also the smallest number divided by -1. A division or
/// remainder by 0 fails the assertion "iDivisor != 0" and changes nothing.
///
/// Compare and the comparison operators fail the assertion "!m_bNull" with "Invalid operation. ValueInt32 is
/// NULL" if the left operand is null; a null right operand counts as 0. One thread at a time uses an object.
class TSL_EXPORT ValueInt32 : public Described<ValueInt32, Value>
{
public:
    /// Null.
    ValueInt32() = default;
    ValueInt32(int iValue) : m_iValue(iValue), m_bNull(false) {}
    ValueInt32(ValueInt32 const & oSource) = default;

    /// Replace the number. The value is null afterwards only if the right operand is.
    ValueInt32 & operator=(ValueInt32 const & oSource);
    ValueInt32 & operator=(int const & iValue);

    bool IsNull() const override { return m_bNull; }
    void SetNull() override;
    ValueConverter const & GetConverter() const override;

    /// A shared null value.
    static ValueInt32 const & Null();

    /// The number; 0 for null.
    int AsInt32() const { return m_iValue; }

    /// Change the number and keep the null state.
    ValueInt32 & operator+=(ValueInt32 const & oRight) { return *this += oRight.m_iValue; }
    ValueInt32 & operator-=(ValueInt32 const & oRight) { return *this -= oRight.m_iValue; }
    ValueInt32 & operator*=(ValueInt32 const & oRight) { return *this *= oRight.m_iValue; }
    ValueInt32 & operator/=(ValueInt32 const & oRight) { return *this /= oRight.m_iValue; }
    ValueInt32 & operator%=(ValueInt32 const & oRight) { return *this %= oRight.m_iValue; }
    ValueInt32 & operator&=(ValueInt32 const & oRight) { return *this &= oRight.m_iValue; }
    ValueInt32 & operator|=(ValueInt32 const & oRight) { return *this |= oRight.m_iValue; }
    ValueInt32 & operator^=(ValueInt32 const & oRight) { return *this ^= oRight.m_iValue; }
    ValueInt32 & operator+=(int const & iRight);
    ValueInt32 & operator-=(int const & iRight);
    ValueInt32 & operator*=(int const & iRight);
    ValueInt32 & operator/=(int const & iRight);
    ValueInt32 & operator%=(int const & iRight);
    ValueInt32 & operator&=(int const & iRight);
    ValueInt32 & operator|=(int const & iRight);
    ValueInt32 & operator^=(int const & iRight);

    /// Change the number by 1.
    ValueInt32 & operator++() { return *this += 1; }
    ValueInt32 & operator--() { return *this -= 1; }

    /// Return a new number, which is never null. The postfix forms return the former number.
    ValueInt32 operator++(int);
    ValueInt32 operator--(int);
    ValueInt32 operator+() const { return m_iValue; }
    ValueInt32 operator-() const;

    /// -1, 0 or 1 if this number is less, equal or greater.
    int Compare(int const & iOther) const;
    int Compare(ValueInt32 const & oOther) const { return Compare(oOther.m_iValue); }

protected:
    void DoCopy(Root const & oSource) override;
    eCompare DoCompareTo(Value const & oOther) const override;

private:
    int m_iValue = 0;
    bool m_bNull = true;
};

template<>
TSL_EXPORT ClassDescription const & Described<ValueInt32, Value>::GetStaticClassDesc();

/// Arithmetic as with the assigning operators. The right operand may be an int, here and in the comparisons.
inline ValueInt32 operator+(ValueInt32 oLeft, ValueInt32 const & oRight)
{
    return oLeft += oRight;
}
inline ValueInt32 operator-(ValueInt32 oLeft, ValueInt32 const & oRight)
{
    return oLeft -= oRight;
}
inline ValueInt32 operator*(ValueInt32 oLeft, ValueInt32 const & oRight)
{
    return oLeft *= oRight;
}
inline ValueInt32 operator/(ValueInt32 oLeft, ValueInt32 const & oRight)
{
    return oLeft /= oRight;
}
inline ValueInt32 operator%(ValueInt32 oLeft, ValueInt32 const & oRight)
{
    return oLeft %= oRight;
}

/// An int as the left operand makes the result an int.
inline int operator+(int iLeft, ValueInt32 const & oRight)
{
    return (ValueInt32(iLeft) += oRight).AsInt32();
}
inline int operator-(int iLeft, ValueInt32 const & oRight)
{
    return (ValueInt32(iLeft) -= oRight).AsInt32();
}
inline int operator*(int iLeft, ValueInt32 const & oRight)
{
    return (ValueInt32(iLeft) *= oRight).AsInt32();
}
inline int operator/(int iLeft, ValueInt32 const & oRight)
{
    return (ValueInt32(iLeft) /= oRight).AsInt32();
}
inline int operator%(int iLeft, ValueInt32 const & oRight)
{
    return (ValueInt32(iLeft) %= oRight).AsInt32();
}

/// Compare as ValueInt32::Compare. The left operand must not be null.
inline bool operator==(ValueInt32 const & oLeft, ValueInt32 const & oRight)
{
    return oLeft.Compare(oRight) == 0;
}
inline std::strong_ordering operator<=>(ValueInt32 const & oLeft, ValueInt32 const & oRight)
{
    return oLeft.Compare(oRight) <=> 0;
}

/// Append the number in its default layout. A null number fails the assertion "!i.IsNull()" with "Invalid
/// operation. Value is NULL".
TSL_EXPORT ValueString & operator<<(ValueString & sLeft, ValueInt32 const & i);
inline ValueString & operator+=(ValueString & sLeft, ValueInt32 const & i)
{
    return sLeft << i;
}
inline ValueString operator+(ValueString sLeft, ValueInt32 const & i)
{
    sLeft << i;
    return sLeft;
}

} // namespace tsl
