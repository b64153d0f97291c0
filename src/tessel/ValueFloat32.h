#pragma once

#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/Value.h>
#include <tessel/ValueString.h>

#include <compare>

namespace tsl
{

/// The nullable 32-bit float.
///
/// A null value has no number: what asks for it fails the assertion "!m_bNull" with "Value must not be
/// NULL". The assigning operators never look at the null state, count a null right operand as its stored
/// 0 and leave the state of the left one as it is.
///
/// Compare and the comparison operators know a tolerance of GetTolerance, whatever the size of the
/// numbers, so that their equality is not transitive; CompareTo compares exactly. A number that is NaN
/// is equal to every other in both.
class TSL_EXPORT ValueFloat32 : public Described<ValueFloat32, Value>
{
public:
    /// Null.
    ValueFloat32() = default;
    ValueFloat32(float fValue) : m_fValue(fValue), m_bNull(false) {}
    ValueFloat32(ValueFloat32 const & oSource) = default;

    ValueFloat32 & operator=(ValueFloat32 const & oSource) = default;
    ValueFloat32 & operator=(float const & fValue);

    bool IsNull() const override { return m_bNull; }
    void SetNull() override;
    ValueConverter const & GetConverter() const override;

    /// The shared null number.
    static ValueFloat32 const & Null();

    /// The number, which must not be null.
    float AsFloat32() const;

    /// How far apart two numbers may be that are equal to Compare: 2 to the power of -23.
    float GetTolerance() const { return 0x1p-23f; }

    ValueFloat32 & operator+=(ValueFloat32 const & oRight) { return *this += oRight.m_fValue; }
    ValueFloat32 & operator-=(ValueFloat32 const & oRight) { return *this -= oRight.m_fValue; }
    ValueFloat32 & operator*=(ValueFloat32 const & oRight) { return *this *= oRight.m_fValue; }
    ValueFloat32 & operator/=(ValueFloat32 const & oRight) { return *this /= oRight.m_fValue; }
    ValueFloat32 & operator+=(float const & fRight);
    ValueFloat32 & operator-=(float const & fRight);
    ValueFloat32 & operator*=(float const & fRight);
    ValueFloat32 & operator/=(float const & fRight);

    ValueFloat32 & operator++() { return *this += 1.0f; }
    ValueFloat32 & operator--() { return *this -= 1.0f; }

    /// A copy, null for null.
    ValueFloat32 operator+() const { return *this; }

    /// A new, non-null number.
    ValueFloat32 operator-() const { return -m_fValue; }

    /// -1, 0 or 1 for a number below, equal to or above the other, which counts as 0 if it is null.
    int Compare(float const & fOther) const;
    int Compare(ValueFloat32 const & oOther) const { return Compare(oOther.m_fValue); }

protected:
    void DoCopy(Root const & oSource) override;
    eCompare DoCompareTo(Value const & oOther) const override;

private:
    float m_fValue = 0.0f;
    bool m_bNull = true;
};

extern template ClassDescription const & Described<ValueFloat32, Value>::GetStaticClassDesc();

/// The result is never null, and neither operand may be. A float stands for a ValueFloat32, here and in
/// the comparisons.
inline ValueFloat32 operator+(ValueFloat32 const & oLeft, ValueFloat32 const & oRight)
{
    return oLeft.AsFloat32() + oRight.AsFloat32();
}
// For a literal 0 on the left, which could be a text as well.
inline ValueFloat32 operator+(float fLeft, ValueFloat32 const & oRight)
{
    return fLeft + oRight.AsFloat32();
}
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

inline bool operator==(ValueFloat32 const & oLeft, ValueFloat32 const & oRight)
{
    return oLeft.Compare(oRight) == 0;
}
inline std::partial_ordering operator<=>(ValueFloat32 const & oLeft, ValueFloat32 const & oRight)
{
    return oLeft.Compare(oRight) <=> 0;
}

/// Appends the number in its default layout. A null number fails the assertion "!f.IsNull()" with
/// "Invalid operation. Value is NULL".
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
