#include <tessel/ValueIntegerConverter.h>

#include "ReplacementFormat.h"
#include "ValueCast.h"

#include <tessel/ValueInt32.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <string_view>

namespace tsl
{

namespace
{

constexpr std::size_t DIGITS_MAX = 10;

std::string_view Trimmed(std::string_view sText)
{
    while (!sText.empty() && String::IsSpace(sText.front()))
        sText.remove_prefix(1);
    while (!sText.empty() && String::IsSpace(sText.back()))
        sText.remove_suffix(1);
    return sText;
}

/// Reads a whole number: a sign if there is more than it, and digits.
Result ParseInteger(std::string_view sText, int & iNumber)
{
    bool const bSign = sText.size() > 1 && (sText.front() == '-' || sText.front() == '+');
    std::string_view const sDigits = sText.substr(bSign ? 1 : 0);
    if (sDigits.empty())
        return MakeResult(ERR::eBadData, "At least one digit expected.");
    if (!std::all_of(sDigits.begin(), sDigits.end(), String::IsDigit))
        return MakeResult(
            ERR::eBadData, "Only digits allowed. integer := [whitespace]*[-+][0-9]+[whitespace]*");
    if (sDigits.size() > DIGITS_MAX)
        return MakeResult(ERR::eBadData, "Overflow. Max 10 digits allowed for ValueInt32.");

    std::int64_t iParsed = 0;
    std::from_chars(sDigits.data(), sDigits.data() + sDigits.size(), iParsed);
    if (bSign && sText.front() == '-')
        iParsed = -iParsed;

    if (iParsed < std::numeric_limits<std::int32_t>::min())
        return MakeResult(ERR::eBadData, "Overflow. Smalest number for ValueInt32 is -2147483648.");
    if (iParsed > std::numeric_limits<std::int32_t>::max())
        return MakeResult(ERR::eBadData, "Overflow. Biggest number for ValueInt32 is 2147483647.");

    iNumber = static_cast<int>(iParsed);
    return Result();
}

} // namespace

ClassDescription const & ValueIntegerConverterLayout::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & ValueIntegerConverterLayout::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<ValueIntegerConverterLayout>(
        &ValueConverterLayout::GetStaticClassDesc(), ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

Root * ValueIntegerConverterLayout::CreateNew()
{
    return new ValueIntegerConverterLayout;
}

ValueIntegerConverterLayout::ValueIntegerConverterLayout() : ValueIntegerConverterLayout("${%d}") {}

ValueIntegerConverterLayout::ValueIntegerConverterLayout(ValueString const & sFormat)
{
    DemandFormat(sFormat, "ValueIntegerConverterLayout");
}

ClassDescription const & ValueIntegerConverter::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & ValueIntegerConverter::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<ValueIntegerConverter>(
        &ValueConverter::GetStaticClassDesc(), ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

Root * ValueIntegerConverter::CreateNew()
{
    return new ValueIntegerConverter;
}

ValueConverterLayout const & ValueIntegerConverter::GetDefaultLayout() const
{
    static ValueIntegerConverterLayout const & oLayout =
        *RegisterStaticObject(new ValueIntegerConverterLayout);
    return oLayout;
}

bool ValueIntegerConverter::DoGetReplacement(Value const & oValue, ValueString const & sIdentifier,
    ValueString & sOut, ValueConverterLayout const &) const
{
    ReplacementFormat::AppendInteger(sOut, sIdentifier, CastValue<ValueInt32 const>(oValue).AsInt32());
    return true;
}

Result ValueIntegerConverter::DoConvertReplacement(
    ValueString & sText, Value & oValue, ValueConverterLayout const &, ValueString const & sIdentifier) const
{
    if (sIdentifier != "%d")
        return MakeResult(ERR::eBadData, "sIdentifier unknown");

    ValueInt32 & oTarget = CastValue<ValueInt32>(oValue);
    int iNumber = 0;
    Result oResult = ParseInteger(Trimmed(sText.s_str()), iNumber);
    if (oResult.IsError())
        return oResult;

    oTarget = iNumber;
    sText.Clear();
    return Result::Null();
}

} // namespace tsl
