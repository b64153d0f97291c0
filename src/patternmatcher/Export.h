#pragma once

/// Exports a class from the library PatternMatcher. All other symbols are hidden.
#define PATTERNMATCHER_EXPORT [[gnu::visibility("default")]]
