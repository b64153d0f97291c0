#pragma once

#include "IniKeyTable.h"

#include <tessel/Result.h>

#include <string>
#include <string_view>
#include <unordered_map>

namespace tsl
{

/// The content of an ini file: chapters by name.
using IniChapters = std::unordered_map<std::string, IniKeyTable>;

/// Parses the lines of an ini file one after the other and adds their content to the chapters.
class IniParser
{
public:
    explicit IniParser(IniChapters & oChapters) : m_oChapters(oChapters) {}

    /// Parses the next line. Code 2, category 2 for a line with an error, which changes nothing in the
    /// chapters.
    [[nodiscard]] Result ParseLine(std::string_view sLine);

private:
    [[nodiscard]] Result ParseChapter(std::string_view sLine);
    [[nodiscard]] Result ParseKey(std::string_view sLine);
    void ContinueValue(std::string_view sMore);

    IniChapters & m_oChapters;
    IniKeyTable * m_pChapter = nullptr; // the current one
    bool m_bKey = false;                // it has a key that a "+=" line can extend
};

} // namespace tsl
