#pragma once

#include <tessel/Export.h>
#include <tessel/Result.h>
#include <tessel/String.h>

#include <memory>
#include <vector>

namespace tsl
{

/// Sorts the arguments of a program into options, each with an optional value, and parameters.
///
/// No option is declared beforehand; the place alone decides. An argument that begins with "--", "-" or
/// "/" is an option, and one that is none is the value of the option directly in front of it, else a
/// parameter. So a value cannot begin with a prefix, and a path that begins with a slash is an option.
///
/// An object is used by one thread at a time. Copies share what was parsed.
class TSL_EXPORT CmdLineParser
{
public:
    enum OptionPrefix
    {
        eOptionAny = 0, ///< in a question: whatever the prefix
        eOptionDash = 1,
        eOptionDoubleDash = 2,
        eOptionSlash = 3
    };

    /// Nothing parsed yet.
    CmdLineParser();
    CmdLineParser(CmdLineParser const & oSource);
    CmdLineParser & operator=(CmdLineParser const & oSource);
    ~CmdLineParser();

    /// Replaces what was parsed by the arguments of a program, its own name included. A negative count and
    /// a null vector stand for no arguments, a null entry for the empty text.
    ///
    /// Code 1 for an option without a name; what stands in front of it is kept.
    [[nodiscard]] Result SetCmdLine(int iCount, char ** ppArguments);

    /// The same for a command line as one text. It is split at blanks; double quotes protect what they
    /// enclose, and a backslash protects a blank.
    [[nodiscard]] Result SetCmdLine(String const & sCmdLine);

    /// Whether there is an option of that name, given without prefix and case-sensitive, and that prefix.
    /// The value is that of the first one, and empty if it has none or there is no such option.
    bool GetOption(char const * sName, String & sValue, OptionPrefix ePrefix) const;

    /// Replace the texts by the names of all options without prefixes, or by all parameters, in the order
    /// of the command line.
    void GetOptions(std::vector<String> & vNames) const;
    void GetParameters(std::vector<String> & vParameters) const;

private:
    struct Private;
    std::shared_ptr<Private> m;
};

} // namespace tsl
