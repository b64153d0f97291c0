#pragma once

#include <tessel/IniFile.h>

#include <optional>
#include <string>
#include <string_view>

/// A key and its chapter.
struct IniPlace
{
    std::string sChapter;
    std::string sKey;
};

/// Splits "chapter/key". Both names may have slashes, so it prefers a chapter and key that the file has, then the
/// longest chapter that the file has, then the shortest key. Returns nothing without a slash.
std::optional<IniPlace> FindPlace(tsl::IniFile const & oFile, std::string_view sPath);

/// Returns the content with another value of the key; the content must have no errors. A new key is added after the
/// last one of its chapter, a new chapter at the end. Lines that continued the former value are removed. Nothing
/// else changes.
std::string SetIniValue(std::string_view sContent, IniPlace const & oPlace, std::string_view sValue);

/// Whether the files differ only in the value of that key, which must be sValue in oAfter.
bool DifferOnlyAt(tsl::IniFile const & oBefore, tsl::IniFile const & oAfter, IniPlace const & oPlace,
    std::string_view sValue);
