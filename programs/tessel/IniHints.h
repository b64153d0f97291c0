#pragma once

#include <string>
#include <string_view>

// Each function returns a hint: what is probably wrong with a line that tsl::IniFile rejects, and what to write
// instead. sText is the trimmed line.

std::string HintAtMissingChapter(std::string_view sText);
std::string HintAtChapterName(std::string_view sName);
std::string HintAtMissingEqual(std::string_view sText, bool bIndented);
std::string HintAtKeyName(std::string_view sText, std::string_view sName);

/// The length of a byte order mark at the beginning; 0 if there is none.
std::size_t GetMarkLength(std::string_view sText);
