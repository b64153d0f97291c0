#pragma once

#include <tessel/ValueString.h>

#include <string_view>

/// The identifiers of a value's replacements are printf formats that a user writes. Here they are checked
/// before printf sees them: literal text, `%%`, and at most one conversion that suits the value, with
/// flags, width and precision. Length modifiers h and l are dropped, since the value's own size counts.
/// Anything else is an assertion failure that names the format.
namespace tsl::ReplacementFormat
{

/// Append what the format makes of the value, with a decimal point whatever the locale is. The text must not
/// be longer than String::Format allows.
void AppendInteger(ValueString & sOut, ValueString const & sFormat, int iNumber);
void AppendFloat(ValueString & sOut, ValueString const & sFormat, float fNumber);
void AppendText(ValueString & sOut, ValueString const & sFormat, char const * sText);

/// The precision of a format that is nothing but "%f" or "%.2f" and so on, up to "%.99f"; -1 for any other.
int GetBarePrecision(std::string_view sFormat);

} // namespace tsl::ReplacementFormat
