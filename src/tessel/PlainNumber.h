#pragma once

#include <tessel/ValueConverterLayout.h>

#include <string_view>

namespace tsl
{

class ValueConverter;

/// Fast paths (R08) for a number through a layout that is that number and literal text.
///
/// They serve only the library's own converters and values, not classes derived from them, so that no
/// program has overridden a step; and only conversions that do not fail. Otherwise they return false and
/// change nothing.
struct PlainNumber
{
    /// Whether a layout is one for the operations below; others need no call.
    static bool IsPlanned(ValueConverterLayout const & oLayout)
    {
        return oLayout.m_oPlan.cConversion != '\0';
    }

    /// Appends the text of the number.
    static bool Write(ValueConverter const & oConverter, Value const & oValue, ValueString & sText,
        ValueConverterLayout const & oLayout);

    /// Sets the number from a text that is nothing but a number and white space, in a layout without text in
    /// front of the number.
    static bool Read(ValueConverter const & oConverter, std::string_view sText, Value & oValue,
        ValueConverterLayout const & oLayout);
};

} // namespace tsl
