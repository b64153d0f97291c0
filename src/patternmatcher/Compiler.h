#pragma once

#include "Program.h"

namespace tsl::Pattern
{

/// Makes a program of a pattern; the flags are those of PatternMatcher. Throws std::invalid_argument for a
/// pattern that is wrong or beyond the limits.
Program Compile(std::string_view sPattern, int iFlags);

} // namespace tsl::Pattern
