#pragma once

#include <tessel/Result.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

/// An option that a command knows, with its dashes.
struct Option
{
    enum class Takes
    {
        eNothing,
        eValue
    };

    char const * sName;
    Takes eTakes;
};

/// Parses the arguments of a command into options and file names.
///
/// The library's CmdLineParser does not do here, since it knows no options by name: the word after any option is
/// its value, so "--json x.txt" would have no file; a path that begins with a slash is an option; and neither "-"
/// nor a value that begins with a dash can be given.
class Arguments
{
public:
    /// Parses the words. A value is the next word, or follows "="; "--" ends the options. Code 2, with a hint, for
    /// an unknown option, a missing value, and a value of an option that takes none.
    [[nodiscard]] tsl::Result Read(
        std::vector<std::string> const & vWords, std::vector<Option> const & vKnown);

    bool Has(std::string const & sOption) const { return m_oOptions.contains(sOption); }

    /// All values of an option, in the order of the arguments.
    std::vector<std::string> const & GetValues(std::string const & sOption) const;

    std::vector<std::string> const & GetFiles() const { return m_vFiles; }

private:
    std::map<std::string, std::vector<std::string>> m_oOptions;
    std::vector<std::string> m_vFiles;
};

/// Returns a failure for wrong arguments, with code 2.
tsl::Result MakeUsageFailure(std::string const & sText);
