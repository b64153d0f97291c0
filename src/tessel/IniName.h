#pragma once

#include <tessel/String.h>

#include <string_view>

namespace tsl
{

/// A name in an ini file: at least one character; letters, digits, "/" and "_". The constructor trims white
/// space.
class IniName : public String
{
public:
    explicit IniName(std::string_view sText);

    /// Whether a text without white space around it is a name.
    static bool IsName(std::string_view sText);

    /// The validator: code 2, category 2 for an empty name and for one with other characters.
    StringValidator const & GetValidator() const override;

    /// The formator, which trims white space.
    StringFormator const & GetFormator() const override;
};

class ChapterName : public IniName
{
public:
    using IniName::IniName;
};

class KeyName : public IniName
{
public:
    using IniName::IniName;
};

} // namespace tsl
