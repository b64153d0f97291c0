#pragma once

#include <cstddef>
#include <string_view>

/// A float as a text and back, with a decimal point whatever the locale is.
namespace tsl::FloatText
{

constexpr int PRECISION_MAX = 99;

/// More than sign, 39 digits, point and decimal places.
constexpr std::size_t FIXED_LENGTH_MAX = 160;

/// Writes what printf makes of "%.Nf", and returns the end of the text. The precision is at most
/// PRECISION_MAX; pText has room for FIXED_LENGTH_MAX bytes.
char * WriteFixed(char * pText, float fNumber, int iPrecision);

/// The parts of a number at the front of a text. All may be empty.
struct Number
{
    std::string_view sText; ///< all of it, with its sign
    std::string_view sInteger;
    std::string_view sFraction; ///< with its point
    std::string_view sExponent; ///< with its letter
};

/// Scans by hand (R08) for what the pattern `^[+-]?(\d*)(\.\d+|)((d|D|e|E)[+-]?(\d+)|)` matches: the
/// longest number at the front of a text.
Number ScanNumber(std::string_view sText);

/// The value of a number of any length. One that is too large is infinite, one that is too small is 0; a
/// sign or an exponent alone is 0 without a sign.
double ReadNumber(Number const & oNumber);

} // namespace tsl::FloatText
