#pragma once

#include "IniKeyTable.h"

#include <tessel/Result.h>

#include <string>
#include <string_view>
#include <unordered_map>

namespace tsl
{

/// What an ini file holds.
using IniChapters = std::unordered_map<std::string, IniKeyTable>;

/// Judges the lines of an ini file one after the other and puts what they say into the chapters.
class IniParser
{
public:
    explicit IniParser(IniChapters & oChapters) : m_oChapters(oChapters) {}

    /// Code 2, category 2 for a line that breaks the rules; it changes nothing in the chapters.
    [[nodiscard]] Result ParseLine(std::string_view sLine);

private:
    [[nodiscard]] Result ParseChapter(std::string_view sLine);
    [[nodiscard]] Result ParseKey(std::string_view sLine);
    void ContinueValue(std::string_view sMore);

    IniChapters & m_oChapters;
    IniKeyTable * m_pChapter = nullptr; // the current one
    bool m_bKey = false;                // it has a key that a line can continue
};

} // namespace tsl
