#include <tessel/ValueIntegerConverter.h>

#include "LastingObject.h"
#include "LayoutFormat.h"

#include "ReplacementFormat.h"
#include "TrimmedText.h"
#include "ValueCast.h"

#include <tessel/ValueInt32.h>

#include <cstdint>
#include <limits>
#include <string_view>

namespace tsl
{

namespace
{

constexpr std::size_t DIGITS_MAX = 10;

/// Reads a whole number: a sign if there is more than it, and digits. The answer is what is wrong with it, or
/// null.
char const * ParseInteger(std::string_view sText, int & iNumber)
{
    bool const bSign = sText.size() > 1 && (sText.front() == '-' || sText.front() == '+');
    std::string_view const sDigits = sText.substr(bSign ? 1 : 0);
    if (sDigits.empty())
        return "At least one digit expected.";

    // Too many digits wrap around in here, and are refused below.
    std::uint64_t iAbsolute = 0;
    for (char const c : sDigits)
    {
        if (c < '0' || c > '9')
            return "Only digits allowed. integer := [whitespace]*[-+][0-9]+[whitespace]*";
        iAbsolute = iAbsolute * 10 + static_cast<std::uint64_t>(c - '0');
    }
    if (sDigits.size() > DIGITS_MAX)
        return "Overflow. Max 10 digits allowed for ValueInt32.";

    auto iParsed = static_cast<std::int64_t>(iAbsolute);
    if (bSign && sText.front() == '-')
        iParsed = -iParsed;

    if (iParsed < std::numeric_limits<std::int32_t>::min())
        return "Overflow. Smalest number for ValueInt32 is -2147483648.";
    if (iParsed > std::numeric_limits<std::int32_t>::max())
        return "Overflow. Biggest number for ValueInt32 is 2147483647.";

    iNumber = static_cast<int>(iParsed);
    return nullptr;
}

} // namespace

template<>
constexpr ClassSource CLASS_SOURCE<ValueIntegerConverterLayout>{};
template<>
ClassDescription const & Described<ValueIntegerConverterLayout, ValueConverterLayout>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

// Out of line, so that only the library has the vtable and the type record of the class.
ValueIntegerConverterLayout::~ValueIntegerConverterLayout() = default;

ValueIntegerConverterLayout::ValueIntegerConverterLayout() : ValueIntegerConverterLayout("${%d}") {}

ValueIntegerConverterLayout::ValueIntegerConverterLayout(ValueString const & sFormat)
{
    SetFormatOrFail(*this, sFormat, "ValueIntegerConverterLayout");
}

template<>
constexpr ClassSource CLASS_SOURCE<ValueIntegerConverter>{};
template<>
ClassDescription const & Described<ValueIntegerConverter, ValueConverter>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

ValueConverterLayout const & ValueIntegerConverter::GetDefaultLayout() const
{
    return LastingObject<ValueIntegerConverterLayout>();
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
    if (std::string_view(sIdentifier.s_str()) != "%d")
        return MakeResult(ERR::eBadData, "sIdentifier unknown");

    ValueInt32 & oTarget = CastValue<ValueInt32>(oValue);
    int iNumber = 0;
    if (char const * const sFailure = ParseInteger(Trimmed(sText.s_str()), iNumber)) [[unlikely]]
        return MakeResult(ERR::eBadData, sFailure);

    oTarget = iNumber;
    sText.Clear();
    return Result();
}

} // namespace tsl
