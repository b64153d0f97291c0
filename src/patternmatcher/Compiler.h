#pragma once

#include "Program.h"

namespace tsl::Pattern
{

/// Compiles a pattern with the flags of PatternMatcher. Throws std::invalid_argument for a pattern that is
/// invalid or exceeds the limits.
Program Compile(std::string_view sPattern, int iFlags);

} // namespace tsl::Pattern
