#include "FloatText.h"

#include "platform/Numbers.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <limits>
#include <system_error>

namespace tsl::FloatText
{

namespace
{

constexpr std::array<std::uint64_t, 10> POWERS_OF_TEN = {
    1, 10, 100, 1'000, 10'000, 100'000, 1'000'000, 10'000'000, 100'000'000, 1'000'000'000};

/// Writes a whole number with a point in front of its last digits.
char * WriteWithPoint(char * pText, std::uint64_t iNumber, int iPrecision)
{
    // Written from the end.
    char aText[std::numeric_limits<std::uint64_t>::digits10 + 3];
    char * p = std::end(aText);
    for (int i = 0; i < iPrecision; ++i, iNumber /= 10)
        *--p = static_cast<char>('0' + iNumber % 10);
    if (iPrecision > 0)
        *--p = '.';
    do
        *--p = static_cast<char>('0' + iNumber % 10);
    while (iNumber /= 10);
    return std::copy(p, std::end(aText), pText);
}

/// Fast path (R08) for numbers from about 1e-12 to 8 million: such a float is a whole number of 24 bits
/// divided by a power of two, so whole numbers scale and round it exactly, half to even as printf does. Null
/// for other numbers.
char * WriteUsual(char * pText, float fNumber, int iPrecision)
{
    constexpr int iMantissaBits = 23;
    constexpr int iExponentOfOne = 127;
    auto const iBits = std::bit_cast<std::uint32_t>(fNumber);
    int const iShift = iExponentOfOne + iMantissaBits - static_cast<int>(iBits >> iMantissaBits & 0xFF);
    if (iShift < 1 || iShift > 63 || static_cast<std::size_t>(iPrecision) >= POWERS_OF_TEN.size())
        return nullptr;

    std::uint64_t const iMantissa = (iBits & ((1u << iMantissaBits) - 1)) | 1u << iMantissaBits;
    std::uint64_t const iScaled = iMantissa * POWERS_OF_TEN[static_cast<std::size_t>(iPrecision)];
    std::uint64_t const iHalf = std::uint64_t{1} << (iShift - 1);
    std::uint64_t const iRest = iScaled & (2 * iHalf - 1);
    std::uint64_t iRounded = iScaled >> iShift;
    if (iRest > iHalf || (iRest == iHalf && iRounded % 2 == 1))
        ++iRounded;

    if (iBits >> 31 != 0)
        *pText++ = '-';
    return WriteWithPoint(pText, iRounded, iPrecision);
}

constexpr bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

constexpr bool IsSign(char c)
{
    return c == '+' || c == '-';
}

char const * SkipDigits(char const * p, char const * pEnd)
{
    while (p != pEnd && IsDigit(*p))
        ++p;
    return p;
}

/// The end of a fraction, or its beginning if there is none.
char const * SkipFraction(char const * pBegin, char const * pEnd)
{
    if (pBegin == pEnd || *pBegin != '.')
        return pBegin;
    char const * const pDigits = pBegin + 1;
    char const * const p = SkipDigits(pDigits, pEnd);
    return p == pDigits ? pBegin : p;
}

/// The end of an exponent, or its beginning if there is none.
char const * SkipExponent(char const * pBegin, char const * pEnd)
{
    if (pBegin == pEnd || (*pBegin != 'e' && *pBegin != 'E' && *pBegin != 'd' && *pBegin != 'D'))
        return pBegin;
    char const * pDigits = pBegin + 1;
    if (pDigits != pEnd && IsSign(*pDigits))
        ++pDigits;
    char const * const p = SkipDigits(pDigits, pEnd);
    return p == pDigits ? pBegin : p;
}

/// The power of ten after the letter, which may be too large for any number.
std::int64_t GetExponent(std::string_view sExponent)
{
    constexpr std::int64_t iBeyondAnyText = std::int64_t{1} << 40;
    if (sExponent.empty())
        return 0;

    bool const bNegative = sExponent[1] == '-';
    std::string_view const sDigits = sExponent.substr(bNegative || sExponent[1] == '+' ? 2 : 1);
    std::int64_t iExponent = iBeyondAnyText;
    std::from_chars(sDigits.data(), sDigits.data() + sDigits.size(), iExponent);
    iExponent = std::min(iExponent, iBeyondAnyText);
    return bNegative ? -iExponent : iExponent;
}

/// A number of any length as 0.ddd times a power of ten, with a first digit that is not zero.
class Decimal
{
public:
    explicit Decimal(Number const & oNumber) : m_iPower(GetExponent(oNumber.sExponent))
    {
        for (char const c : oNumber.sInteger)
            Take(c, 1, 0);
        for (char const c : oNumber.sFraction)
            if (c != '.')
                Take(c, 0, -1);
    }

    bool IsZero() const { return m_iDigits == 0; }
    std::int64_t GetPower() const { return m_iPower; }

    /// Errors are those of std::from_chars. To be called once.
    std::errc Read(double & fNumber)
    {
        char * pEnd = m_aText + POINT_LENGTH + m_iDigits;
        if (m_bMore)
            *pEnd++ = '1';
        *pEnd++ = 'e';
        pEnd = std::to_chars(pEnd, std::end(m_aText), m_iPower).ptr;
        return Platform::ReadNumber(m_aText, pEnd, fNumber);
    }

private:
    // After so many digits, all that matters is whether a further one is not zero.
    static constexpr std::size_t DIGITS_MAX = 800;
    static constexpr std::size_t POINT_LENGTH = 2;
    static constexpr std::size_t EXPONENT_LENGTH_MAX = 14;

    void Take(char cDigit, int iPowerOfDigit, int iPowerOfLeadingZero)
    {
        if (IsZero() && cDigit == '0')
        {
            m_iPower += iPowerOfLeadingZero;
            return;
        }

        m_iPower += iPowerOfDigit;
        if (m_iDigits < DIGITS_MAX)
            m_aText[POINT_LENGTH + m_iDigits++] = cDigit;
        else
            m_bMore = m_bMore || cDigit != '0';
    }

    char m_aText[POINT_LENGTH + DIGITS_MAX + EXPONENT_LENGTH_MAX] = {'0', '.'};
    std::size_t m_iDigits = 0;
    std::int64_t m_iPower;
    bool m_bMore = false;
};

/// Reads a number of any length and size, with any letter in front of the exponent.
double ReadUnusual(Number const & oNumber)
{
    constexpr std::int64_t iPowerMax = 400;

    Decimal oDecimal(oNumber);
    if (oDecimal.IsZero() || oDecimal.GetPower() < -iPowerMax)
        return 0;
    if (oDecimal.GetPower() > iPowerMax)
        return std::numeric_limits<double>::infinity();

    double fNumber = 0;
    if (oDecimal.Read(fNumber) != std::errc::result_out_of_range)
        return fNumber;
    return oDecimal.GetPower() > 0 ? std::numeric_limits<double>::infinity() : 0;
}

/// Reads the number from its text without the sign.
double ReadUnsigned(std::string_view sText, Number const & oNumber)
{
    // Longer texts may have a power of ten that from_chars loses.
    constexpr std::size_t iUsualLength = 64;
    bool const bUsualLetter =
        oNumber.sExponent.empty() || oNumber.sExponent.front() == 'e' || oNumber.sExponent.front() == 'E';
    if (!bUsualLetter || sText.size() > iUsualLength)
        return ReadUnusual(oNumber);

    double fNumber = 0;
    std::errc const eError = Platform::ReadNumber(sText.data(), sText.data() + sText.size(), fNumber);
    return eError == std::errc::result_out_of_range ? ReadUnusual(oNumber) : fNumber;
}

} // namespace

char * WriteFixed(char * pText, float fNumber, int iPrecision)
{
    if (char * const pEnd = WriteUsual(pText, fNumber, iPrecision))
        return pEnd;
    return std::to_chars(
        pText, pText + FIXED_LENGTH_MAX, double{fNumber}, std::chars_format::fixed, iPrecision)
        .ptr;
}

Number ScanNumber(std::string_view sText)
{
    char const * const pBegin = sText.data();
    char const * const pEnd = pBegin + sText.size();
    char const * const pInteger = pBegin != pEnd && IsSign(*pBegin) ? pBegin + 1 : pBegin;
    char const * const pFraction = SkipDigits(pInteger, pEnd);
    char const * const pExponent = SkipFraction(pFraction, pEnd);
    char const * const pRest = SkipExponent(pExponent, pEnd);
    return {{pBegin, pRest}, {pInteger, pFraction}, {pFraction, pExponent}, {pExponent, pRest}};
}

double ReadNumber(Number const & oNumber)
{
    if (oNumber.sInteger.empty() && oNumber.sFraction.empty())
        return 0;

    std::string_view sUnsigned = oNumber.sText;
    bool const bNegative = sUnsigned.front() == '-';
    if (IsSign(sUnsigned.front()))
        sUnsigned.remove_prefix(1);
    double const fUnsigned = ReadUnsigned(sUnsigned, oNumber);
    return bNegative ? -fUnsigned : fUnsigned;
}

} // namespace tsl::FloatText
