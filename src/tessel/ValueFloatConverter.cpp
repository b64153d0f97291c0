#include <tessel/ValueFloatConverter.h>

#include "LastingObject.h"
#include "LayoutFormat.h"

#include "ObjectCache.h"
#include "ReplacementFormat.h"
#include "ValueCast.h"

#include <tessel/ValueFloat32.h>

#include <patternmatcher/PatternMatcher.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string_view>
#include <system_error>
#include <utility>

namespace tsl
{

namespace
{

constexpr char const * NUMBER_PATTERN = R"(^[+-]?(\d*)(\.\d+|)((d|D|e|E)[+-]?(\d+)|))";

/// The groups of the pattern.
enum Group : unsigned int
{
    eGroupNumber = 0,
    eGroupInteger = 1,
    eGroupFraction = 2, ///< with its point
    eGroupExponent = 3  ///< with its letter
};

constexpr double FLOAT_MAX = std::numeric_limits<float>::max();

/// A number without its sign, as the pattern has taken it apart.
struct Number
{
    std::string_view sText;
    std::string_view sInteger;
    std::string_view sFraction; ///< with its point
    std::string_view sExponent; ///< with its letter
};

/// The power of ten behind the letter, which may be too large for any number.
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
        return std::from_chars(m_aText, pEnd, fNumber).ec;
    }

private:
    // More significant digits cannot change the result, but for whether there is any behind them.
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

/// Reads a number of any length and size, with any letter in front of the exponent. What is too large
/// becomes infinite, what is too small becomes 0.
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

double ReadUnsigned(Number const & oNumber)
{
    // Longer texts may have a power of ten that from_chars loses.
    constexpr std::size_t iUsualLength = 64;
    bool const bUsualLetter =
        oNumber.sExponent.empty() || oNumber.sExponent.front() == 'e' || oNumber.sExponent.front() == 'E';
    if (!bUsualLetter || oNumber.sText.size() > iUsualLength)
        return ReadUnusual(oNumber);

    double fNumber = 0;
    char const * const pText = oNumber.sText.data();
    auto const oEnd = std::from_chars(pText, pText + oNumber.sText.size(), fNumber);
    return oEnd.ec == std::errc::result_out_of_range ? ReadUnusual(oNumber) : fNumber;
}

/// Reads what the pattern has matched in the text.
double ReadNumber(std::string_view sText, PatternMatcher::Matches const & oMatches)
{
    std::string_view sNumber = oMatches.GetText(sText, eGroupNumber);
    bool const bNegative = sNumber.front() == '-';
    if (bNegative || sNumber.front() == '+')
        sNumber.remove_prefix(1);

    Number const oNumber{sNumber, oMatches.GetText(sText, eGroupInteger),
        oMatches.GetText(sText, eGroupFraction), oMatches.GetText(sText, eGroupExponent)};

    // A sign or an exponent alone is no number and counts as 0 without a sign.
    if (oNumber.sInteger.empty() && oNumber.sFraction.empty())
        return 0;
    return bNegative ? -ReadUnsigned(oNumber) : ReadUnsigned(oNumber);
}

} // namespace

ValueFloatConverterLayout::ValueFloatConverterLayout()
{
    UpdateFormat();
}

ValueFloatConverterLayout::ValueFloatConverterLayout(ValueString const & sFormat)
{
    SetFormatOrFail(*this, sFormat, "ValueFloatConverterLayout");
}

template<>
constexpr ClassSource CLASS_SOURCE<ValueFloatConverterLayout>{};
template ClassDescription const &
Described<ValueFloatConverterLayout, ValueConverterLayout>::GetStaticClassDesc();

void ValueFloatConverterLayout::SetDecimalPlaces(ValueInt32 const & iDecimalPlaces)
{
    m_iDecimalPlaces.Set(iDecimalPlaces);
    UpdateFormat();
}

void ValueFloatConverterLayout::DoCopy(Root const & oSource)
{
    ValueConverterLayout::DoCopy(oSource);
    m_iDecimalPlaces.Set(static_cast<ValueFloatConverterLayout const &>(oSource).m_iDecimalPlaces);
}

void ValueFloatConverterLayout::UpdateFormat()
{
    String sFormat("${%f}");
    if (!m_iDecimalPlaces.IsNull())
        sFormat.Format("${%%.%df}", m_iDecimalPlaces.AsInt32());

    // A derived layout that refuses the format keeps the one that it has.
    static_cast<void>(SetFormat(sFormat));
}

struct TSL_HIDDEN ValueFloatConverter::Private
{
    PatternMatcher const oNumber{NUMBER_PATTERN};
    ObjectCache<PatternMatcher::Matches> oMatches;
};

ValueFloatConverter::ValueFloatConverter() : m(std::make_shared<Private>()) {}

template<>
constexpr ClassSource CLASS_SOURCE<ValueFloatConverter>{};
template ClassDescription const & Described<ValueFloatConverter, ValueConverter>::GetStaticClassDesc();

ValueConverterLayout const & ValueFloatConverter::GetDefaultLayout() const
{
    return LastingObject<ValueFloatConverterLayout>();
}

bool ValueFloatConverter::DoGetReplacement(Value const & oValue, ValueString const & sIdentifier,
    ValueString & sOut, ValueConverterLayout const &) const
{
    if (sIdentifier.Find('f') < 0)
        return false;

    ReplacementFormat::AppendFloat(
        sOut, sIdentifier, double{CastValue<ValueFloat32 const>(oValue).AsFloat32()});
    return true;
}

Result ValueFloatConverter::DoConvertReplacement(
    ValueString & sText, Value & oValue, ValueConverterLayout const &, ValueString const & sIdentifier) const
{
    if (sIdentifier.Find('f') < 0)
        return MakeResult(ERR::eBadData, "sIdentifier unknown");

    ValueFloat32 & oTarget = CastValue<ValueFloat32>(oValue);
    std::string const & sAll = sText.s_str();
    auto const iBlanks =
        static_cast<std::size_t>(std::find_if_not(sAll.begin(), sAll.end(), String::IsSpace) - sAll.begin());
    std::string_view const sTrimmed = std::string_view(sAll).substr(iBlanks);

    // The pattern matches every text, but the match may be empty.
    std::unique_ptr<PatternMatcher::Matches> pMatches = m->oMatches.Take();
    m->oNumber.Match(sTrimmed, 0, *pMatches);
    std::size_t const iLength = pMatches->GetText(sTrimmed, eGroupNumber).size();
    double const fNumber = iLength == 0 ? 0 : ReadNumber(sTrimmed, *pMatches);
    m->oMatches.GiveBack(std::move(pMatches));

    if (iLength == 0)
        return MakeResult(
            ERR::eBadData, String("Invalid syntax. Cannot convert '") + sAll + "' to ValueFloat.");
    if (fNumber > FLOAT_MAX)
        return MakeResult(ERR::eOutOfRange, "Overflow. Smalest number for ValueFloat32 is FLOAT32_MAX.");
    if (fNumber < -FLOAT_MAX)
        return MakeResult(ERR::eOutOfRange, "Overflow. Biggest number for ValueFloat32 is FLOAT32_MIN.");

    oTarget = static_cast<float>(fNumber);
    sText.CutLeft(static_cast<unsigned int>(iLength + iBlanks));
    sText.TrimLeft();
    return Result::Null();
}

} // namespace tsl
