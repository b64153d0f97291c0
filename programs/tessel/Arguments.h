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

/// The arguments of a command: its options and the names of files.
///
/// Not the library's CmdLineParser, which knows no option by name and so goes by the place alone: there the word
/// behind any option is its value, so that "--json x.txt" would have no file; a path that begins with a slash is
/// an option; and neither "-" nor a value with a dash in front can be given. A program that is called with
/// file names has to know its options.
class Arguments
{
public:
    /// Sorts the words. A value is the next word, or follows behind "="; "--" ends the options. Code 2, with a hint,
    /// for an option that is not among the known ones and for a value that is missing or too much.
    [[nodiscard]] tsl::Result Read(
        std::vector<std::string> const & vWords, std::vector<Option> const & vKnown);

    bool Has(std::string const & sOption) const { return m_oOptions.contains(sOption); }

    /// All values of an option, in their order.
    std::vector<std::string> const & GetValues(std::string const & sOption) const;

    std::vector<std::string> const & GetFiles() const { return m_vFiles; }

private:
    std::map<std::string, std::vector<std::string>> m_oOptions;
    std::vector<std::string> m_vFiles;
};

/// A failure that means wrong arguments, with exit code 2.
tsl::Result MakeUsageFailure(std::string const & sText);
