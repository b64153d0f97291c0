#pragma once

// PATTERNMATCHER_EXPORT exports a class from the library PatternMatcher; all other symbols are hidden.

#ifndef _WIN32
#define PATTERNMATCHER_EXPORT [[gnu::visibility("default")]]
#elif defined PatternMatcher_EXPORTS
#define PATTERNMATCHER_EXPORT [[gnu::dllexport]]
#else
#define PATTERNMATCHER_EXPORT [[gnu::dllimport]]
#endif
