#include "PlainNumber.h"

#include "FloatText.h"
#include "TrimmedText.h"

#include <tessel/ValueFloat32.h>
#include <tessel/ValueFloatConverter.h>
#include <tessel/ValueInt32.h>
#include <tessel/ValueIntegerConverter.h>

#include <charconv>
#include <limits>
#include <string_view>
#include <system_error>
#include <typeinfo>

namespace tsl
{

namespace
{

bool IsNull(ValueString const & s)
{
    // Not virtual: the texts of a layout are of this very class.
    return s.ValueString::IsNull();
}

bool IsNothing(ValueString const & s)
{
    return !IsNull(s) && s.IsEmpty();
}

template<class Converter, class ValueClass>
bool AreExactly(ValueConverter const & oConverter, Value const & oValue)
{
    return typeid(oConverter) == typeid(Converter) && typeid(oValue) == typeid(ValueClass);
}

/// Whether converter and value are those of the conversion, and not of classes derived from them.
bool AreOwn(char cConversion, ValueConverter const & oConverter, Value const & oValue)
{
    if (cConversion == 'd')
        return AreExactly<ValueIntegerConverter, ValueInt32>(oConverter, oValue);
    return AreExactly<ValueFloatConverter, ValueFloat32>(oConverter, oValue);
}

char * WriteInteger(char * pText, int iNumber)
{
    return std::to_chars(pText, pText + std::numeric_limits<int>::digits10 + 2, iNumber).ptr;
}

bool ReadInteger(std::string_view sText, ValueInt32 & oValue)
{
    // The converter limits the digits. Longer texts are left to it.
    constexpr std::size_t iLengthMax = 10;

    int iNumber = 0;
    char const * const pEnd = sText.data() + sText.size();
    auto const oRead = std::from_chars(sText.data(), pEnd, iNumber);
    if (oRead.ptr != pEnd || oRead.ec != std::errc() || sText.size() > iLengthMax)
        return false;
    oValue = iNumber;
    return true;
}

bool ReadFloat(std::string_view sText, ValueFloat32 & oValue)
{
    constexpr double fMax = std::numeric_limits<float>::max();

    FloatText::Number const oNumber = FloatText::ScanNumber(sText);
    if (oNumber.sText.empty() || oNumber.sText.size() != sText.size())
        return false;
    double const fNumber = FloatText::ReadNumber(oNumber);
    if (fNumber < -fMax || fNumber > fMax)
        return false;
    oValue = static_cast<float>(fNumber);
    return true;
}

} // namespace

bool PlainNumber::Write(ValueConverter const & oConverter, Value const & oValue, ValueString & sText,
    ValueConverterLayout const & oLayout)
{
    auto const & oPlan = oLayout.m_oPlan;
    if (!AreOwn(oPlan.cConversion, oConverter, oValue) || oValue.IsNull() || IsNull(oLayout.m_sPrefix)
        || IsNull(oLayout.m_sPostfix))
        return false;

    char aNumber[FloatText::FIXED_LENGTH_MAX];
    char const * const pEnd =
        oPlan.cConversion == 'd' ? WriteInteger(aNumber, static_cast<ValueInt32 const &>(oValue).AsInt32())
                                 : FloatText::WriteFixed(aNumber,
                                     static_cast<ValueFloat32 const &>(oValue).AsFloat32(), oPlan.iPrecision);

    std::string const & sFormat = oLayout.m_sFormat.s_str();
    std::string sAll(oLayout.m_sPrefix.s_str());
    sAll.append(sFormat, 0, oPlan.iStart);
    sAll.append(aNumber, static_cast<std::size_t>(pEnd - aNumber));
    sAll.append(sFormat, oPlan.iEnd);
    sAll.append(oLayout.m_sPostfix.s_str());
    sText << sAll;
    return true;
}

bool PlainNumber::Read(ValueConverter const & oConverter, std::string_view sText, Value & oValue,
    ValueConverterLayout const & oLayout)
{
    // Literal text after the number is never read.
    auto const & oPlan = oLayout.m_oPlan;
    if (!AreOwn(oPlan.cConversion, oConverter, oValue) || oPlan.iStart > 0 || !IsNothing(oLayout.m_sPrefix)
        || !IsNothing(oLayout.m_sPostfix))
        return false;

    std::string_view const sTrimmed = Trimmed(sText);
    return oPlan.cConversion == 'd' ? ReadInteger(sTrimmed, static_cast<ValueInt32 &>(oValue))
                                    : ReadFloat(sTrimmed, static_cast<ValueFloat32 &>(oValue));
}

} // namespace tsl
