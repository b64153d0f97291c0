#pragma once

#include <string>
#include <string_view>

// What is probably wrong with a line that tsl::IniFile does not take, and what to write instead. Each text is the trimmed
// line.

std::string HintAtMissingChapter(std::string_view sText);
std::string HintAtChapterName(std::string_view sName);
std::string HintAtMissingEqual(std::string_view sText, bool bIndented);
std::string HintAtKeyName(std::string_view sText, std::string_view sName);

/// The length of a byte order mark at the beginning; 0 if there is none.
std::size_t GetMarkLength(std::string_view sText);
