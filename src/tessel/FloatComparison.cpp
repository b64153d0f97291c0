#include <tessel/FloatComparison.h>

#include <cmath>
#include <numbers>

namespace tsl
{

namespace
{

constexpr int DOUBLE_DIGITS = 14;
constexpr int FLOAT_DIGITS = 5;

/// -1 for NaN, which fails both comparisons.
template<class Number>
int CompareWithin(Number a, Number b, Number fTolerance)
{
    Number const fDifference = a - b;
    if (fTolerance >= std::abs(fDifference))
        return 0;
    return fDifference > fTolerance ? 1 : -1;
}

/// One unit in the significant decimal digit iDigit of the number. Every step is rounded to the precision of
/// Number.
template<class Number>
Number GetUnit(Number fNumber, int iDigit)
{
    Number const fMagnitude = std::floor(std::log10(fNumber));
    Number const fSteps = Number{1} - static_cast<Number>(iDigit);
    constexpr Number fLogOfTen = std::numbers::ln10_v<Number>;
    return std::exp(fMagnitude * fLogOfTen) * std::exp(fSteps * fLogOfTen);
}

} // namespace

int CompareAbsTo(double a, double b, double fTolerance)
{
    return CompareWithin(a, b, fTolerance);
}
int CompareAbsTo(float a, float b, float fTolerance)
{
    return CompareWithin(a, b, fTolerance);
}

int CompareRelTo(double a, double b, int iDigits)
{
    return CompareWithin(a, b, GetUnit(a, iDigits));
}
int CompareRelTo(double a, double b)
{
    return CompareRelTo(a, b, DOUBLE_DIGITS);
}
int CompareRelTo(float a, float b, int iDigits)
{
    return CompareWithin(a, b, GetUnit(a, iDigits));
}
int CompareRelTo(float a, float b)
{
    return CompareRelTo(a, b, FLOAT_DIGITS);
}

} // namespace tsl
