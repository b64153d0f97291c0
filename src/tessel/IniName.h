#pragma once

#include <tessel/String.h>

#include <string_view>

namespace tsl
{

/// A name in an ini file: letters, digits, "/" and "_", at least one of them. White space around it goes
/// the moment it is wrapped.
class IniName : public String
{
public:
    explicit IniName(std::string_view sText);

    /// Code 2, category 2 for an empty name and for one with other bytes.
    StringValidator const & GetValidator() const override;

    /// Trims.
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
