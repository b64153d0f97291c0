#pragma once

/// Marks what the library PatternMatcher exports; everything else in it is hidden.
#define PATTERNMATCHER_EXPORT [[gnu::visibility("default")]]
