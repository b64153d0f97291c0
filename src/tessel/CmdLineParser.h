#pragma once

#include <tessel/Export.h>
#include <tessel/Result.h>
#include <tessel/String.h>

#include <memory>
#include <vector>

namespace tsl
{

/// Parses a command line into options, each with an optional value, and parameters.
///
///     tsl::CmdLineParser oParser;
///     tsl::Result const oResult = oParser.SetCmdLine("--level 3 input.txt"); // one option and one parameter
///     tsl::String sLevel;
///     if (oParser.GetOption("level", sLevel, tsl::CmdLineParser::eOptionAny))
///         std::cout << sLevel.c_str();
///
/// Options are not declared. An argument that begins with "--", "-" or "/" is an option. Any other is the value of
/// the option directly before it, or else a parameter. So a value cannot begin with a prefix, and a path that
/// begins with a slash is an option.
///
/// One thread at a time uses an object. Copies share what was parsed.
class TSL_EXPORT CmdLineParser
{
public:
    /// What an option begins with.
    enum OptionPrefix
    {
        eOptionAny = 0, ///< for GetOption: any prefix
        eOptionDash = 1,
        eOptionDoubleDash = 2,
        eOptionSlash = 3
    };

    /// Has no options and no parameters.
    CmdLineParser();
    CmdLineParser(CmdLineParser const & oSource);
    CmdLineParser & operator=(CmdLineParser const & oSource);
    ~CmdLineParser();

    /// Parses all arguments and replaces what was parsed before. The program's own name is an argument like any
    /// other if it is passed. A negative count or a null vector means no arguments, a null entry an empty text.
    /// Code 1 for an option without a name; the arguments before it are kept.
    [[nodiscard]] Result SetCmdLine(int iCount, char ** ppArguments);

    /// The same for a command line as one text. It is split at blanks. Double quotes protect what they enclose, and
    /// a backslash protects a blank.
    [[nodiscard]] Result SetCmdLine(String const & sCmdLine);

    /// Returns whether there is an option of that name and prefix. The name is given without a prefix and is
    /// case-sensitive. sValue becomes the value of the first such option, or empty if there is none.
    bool GetOption(char const * sName, String & sValue, OptionPrefix ePrefix) const;

    /// Replace the contents of the vector by the names of all options without prefixes, or by all parameters, in
    /// the order of the command line.
    void GetOptions(std::vector<String> & vNames) const;
    void GetParameters(std::vector<String> & vParameters) const;

private:
    struct Private;
    std::shared_ptr<Private> m;
};

} // namespace tsl
