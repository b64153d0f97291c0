#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Value.h>
#include <tessel/ValueString.h>

#include <compare>

namespace tsl
{

/// The nullable 32-bit integer.
///
/// Arithmetic never looks at the null state and counts a null operand as its stored 0; the result takes
/// the state of the left operand. Numbers wrap around as two's complement does, also for the smallest
/// number divided by -1. A division or remainder by 0 fails the assertion "iDivisor != 0" and changes
/// nothing.
///
/// Compare and the comparison operators fail the assertion "!m_bNull" with "Invalid operation. ValueInt32
/// is NULL" on a null left operand; a null right operand counts as 0.
class TSL_EXPORT ValueInt32 : public Described<ValueInt32, Value>
{
public:
    /// Null.
    ValueInt32() = default;
    ValueInt32(int iValue) : m_iValue(iValue), m_bNull(false) {}
    ValueInt32(ValueInt32 const & oSource) = default;

    ValueInt32 & operator=(ValueInt32 const & oSource);
    ValueInt32 & operator=(int const & iValue);

    bool IsNull() const override { return m_bNull; }
    void SetNull() override;
    ValueConverter const & GetConverter() const override;

    /// The shared null number.
    static ValueInt32 const & Null();

    /// The number; 0 for null.
    int AsInt32() const { return m_iValue; }

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

    ValueInt32 & operator++() { return *this += 1; }
    ValueInt32 & operator--() { return *this -= 1; }

    /// The postfix and unary forms give a new, non-null number.
    ValueInt32 operator++(int);
    ValueInt32 operator--(int);
    ValueInt32 operator+() const { return m_iValue; }
    ValueInt32 operator-() const;

    /// -1, 0 or 1.
    int Compare(int const & iOther) const;
    int Compare(ValueInt32 const & oOther) const { return Compare(oOther.m_iValue); }

protected:
    void DoCopy(Root const & oSource) override;
    eCompare DoCompareTo(Value const & oOther) const override;

private:
    int m_iValue = 0;
    bool m_bNull = true;
};

extern template ClassDescription const & Described<ValueInt32, Value>::GetStaticClassDesc();

/// An int on the right stands for a ValueInt32, here and in the comparisons.
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

/// With a plain number on the left the result is a plain number.
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

inline bool operator==(ValueInt32 const & oLeft, ValueInt32 const & oRight)
{
    return oLeft.Compare(oRight) == 0;
}
inline std::strong_ordering operator<=>(ValueInt32 const & oLeft, ValueInt32 const & oRight)
{
    return oLeft.Compare(oRight) <=> 0;
}

/// Appends the number in its default layout. A null number fails the assertion "!i.IsNull()" with
/// "Invalid operation. Value is NULL".
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
