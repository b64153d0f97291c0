#pragma once

#include <tessel/ValueConverterLayout.h>

#include <string_view>

/// What layouts and converters share about formats.
namespace tsl
{

/// Sets the format for a constructor. A format that SetFormat refuses is an assertion failure that names the
/// class.
void SetFormatOrFail(ValueConverterLayout & oLayout, ValueString const & sFormat, char const * sClassName);

/// One `${...}` of a format.
struct Replacement
{
    std::size_t iStart = std::string_view::npos; ///< of the "$"
    std::size_t iEnd = std::string_view::npos;   ///< of the "}"

    bool IsFound() const { return iStart != std::string_view::npos; }

    /// Whether there is a "}", and an identifier in front of it.
    bool IsClosed() const;

    std::string_view GetIdentifier(std::string_view sFormat) const;
};

/// The first replacement at or after a position.
Replacement FindReplacement(std::string_view sFormat, std::size_t iFrom);

} // namespace tsl
