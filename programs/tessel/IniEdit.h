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

/// Takes "chapter/key" apart. Both may have slashes; of all ways that which the file has, else the one with the
/// longest chapter that it has, else the one with the shortest key. Nothing without a slash.
std::optional<IniPlace> FindPlace(tsl::IniFile const & oFile, std::string_view sPath);

/// The content of an ini file without errors with another value of the key; all else stays as it is. A key that is not
/// there comes behind the last one of its chapter, a chapter at the end of the file. The lines that continued the
/// former value go.
std::string SetIniValue(std::string_view sContent, IniPlace const & oPlace, std::string_view sValue);

/// Whether the files differ in nothing but the value of that key, which is the given one in the second file.
bool DifferOnlyAt(tsl::IniFile const & oBefore, tsl::IniFile const & oAfter, IniPlace const & oPlace,
    std::string_view sValue);
