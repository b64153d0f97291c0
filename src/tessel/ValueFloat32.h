#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Value.h>
#include <tessel/ValueString.h>

#include <compare>

namespace tsl
{

/// A 32-bit float that can be null.
///
///     ValueFloat32 oSum(1.5f);
///     oSum += 2;
///     if (!oSum.IsNull())
///         fTotal = oSum.AsFloat32(); // 3.5
///
/// Reading the number of a null value fails the assertion "!m_bNull" with "Value must not be NULL". Operators
/// that assign, such as +=, ignore the null state: a null right operand counts as its stored 0, and the left
/// operand keeps its state, also if that is null.
///
/// Compare and the comparison operators have the absolute tolerance GetTolerance, so equality is not
/// transitive. CompareTo compares exactly. In both, NaN equals every number. One thread at a time uses an
/// object.
class TSL_EXPORT ValueFloat32 : public Described<ValueFloat32, Value>
{
public:
    /// Null.
    ValueFloat32() = default;
    ValueFloat32(float fValue) : m_fValue(fValue), m_bNull(false) {}
    ValueFloat32(ValueFloat32 const & oSource) = default;

    /// Replace the number. The value is null afterwards only if the right operand is.
    ValueFloat32 & operator=(ValueFloat32 const & oSource) = default;
    ValueFloat32 & operator=(float const & fValue);

    bool IsNull() const override { return m_bNull; }
    void SetNull() override;
    ValueConverter const & GetConverter() const override;

    /// A shared null value.
    static ValueFloat32 const & Null();

    /// The number. The value must not be null.
    float AsFloat32() const;

    /// The largest difference of two numbers that Compare treats as equal: 2 to the power of -23.
    float GetTolerance() const { return 0x1p-23f; }

    /// Change the number and keep the null state.
    ValueFloat32 & operator+=(ValueFloat32 const & oRight) { return *this += oRight.m_fValue; }
    ValueFloat32 & operator-=(ValueFloat32 const & oRight) { return *this -= oRight.m_fValue; }
    ValueFloat32 & operator*=(ValueFloat32 const & oRight) { return *this *= oRight.m_fValue; }
    ValueFloat32 & operator/=(ValueFloat32 const & oRight) { return *this /= oRight.m_fValue; }
    ValueFloat32 & operator+=(float const & fRight);
    ValueFloat32 & operator-=(float const & fRight);
    ValueFloat32 & operator*=(float const & fRight);
    ValueFloat32 & operator/=(float const & fRight);

    /// Change the number by 1.
    ValueFloat32 & operator++() { return *this += 1.0f; }
    ValueFloat32 & operator--() { return *this -= 1.0f; }

    /// A copy; null for null.
    ValueFloat32 operator+() const { return *this; }

    /// A new number, never null; a null value counts as 0.
    ValueFloat32 operator-() const { return -m_fValue; }

    /// -1, 0 or 1 if this number is less, equal or greater. It must not be null; a null argument counts as 0.
    int Compare(float const & fOther) const;
    int Compare(ValueFloat32 const & oOther) const { return Compare(oOther.m_fValue); }

protected:
    void DoCopy(Root const & oSource) override;
    eCompare DoCompareTo(Value const & oOther) const override;

private:
    float m_fValue = 0.0f;
    bool m_bNull = true;
};

template<>
TSL_EXPORT ClassDescription const & Described<ValueFloat32, Value>::GetStaticClassDesc();

/// Neither operand may be null, and the result never is. A float may be used for either operand, here and in
/// the comparisons.
inline ValueFloat32 operator+(ValueFloat32 const & oLeft, ValueFloat32 const & oRight)
{
    return oLeft.AsFloat32() + oRight.AsFloat32();
}
/// The same. Without this overload a literal 0 as the left operand would be ambiguous: it could also be a null text.
inline ValueFloat32 operator+(float fLeft, ValueFloat32 const & oRight)
{
    return fLeft + oRight.AsFloat32();
}

/// As operator+.
inline ValueFloat32 operator-(ValueFloat32 const & oLeft, ValueFloat32 const & oRight)
{
    return oLeft.AsFloat32() - oRight.AsFloat32();
}
inline ValueFloat32 operator*(ValueFloat32 const & oLeft, ValueFloat32 const & oRight)
{
    return oLeft.AsFloat32() * oRight.AsFloat32();
}
inline ValueFloat32 operator/(ValueFloat32 const & oLeft, ValueFloat32 const & oRight)
{
    return oLeft.AsFloat32() / oRight.AsFloat32();
}

/// Compare as ValueFloat32::Compare, with its tolerance. The left operand must not be null.
inline bool operator==(ValueFloat32 const & oLeft, ValueFloat32 const & oRight)
{
    return oLeft.Compare(oRight) == 0;
}
inline std::partial_ordering operator<=>(ValueFloat32 const & oLeft, ValueFloat32 const & oRight)
{
    return oLeft.Compare(oRight) <=> 0;
}

/// Append the number in its default layout. A null number fails the assertion "!f.IsNull()" with "Invalid
/// operation. Value is NULL".
TSL_EXPORT ValueString & operator<<(ValueString & sLeft, ValueFloat32 const & f);
inline ValueString & operator+=(ValueString & sLeft, ValueFloat32 const & f)
{
    return sLeft << f;
}
inline ValueString operator+(ValueString sLeft, ValueFloat32 const & f)
{
    sLeft << f;
    return sLeft;
}

} // namespace tsl
