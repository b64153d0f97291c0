#pragma once

#include <system_error>

/// Numbers as texts.
namespace tsl::Platform
{

/// Reads a number as std::from_chars does, which some standard libraries lack for this type.
std::errc ReadNumber(char const * pBegin, char const * pEnd, double & fNumber);

} // namespace tsl::Platform
