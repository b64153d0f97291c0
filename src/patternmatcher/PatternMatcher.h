#pragma once

#include <patternmatcher/Export.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace tsl
{

/// A compiled regular expression, which searches texts.
///
/// Of all matches the leftmost is found, and of those that begin there the one that the Perl family of
/// expressions prefers: branches from left to right, greedy repetitions long, lazy ones short. The time of
/// a search grows in proportion to the text, whatever the pattern, and for one text at most in proportion to
/// the pattern's instructions and groups. Their limits are such that no byte takes longer than 0.2 milliseconds
/// of a processor of today, and no pattern more than 8 MiB, its searches included. Both searching and compiling
/// need a few kilobytes of stack and no more for long texts or deep patterns.
///
/// Texts are bytes. Zero bytes are bytes like any other, a line ends with "\n", and letters, digits and
/// blanks are those of ASCII, whatever the locale. A pattern is made of:
///
///     x              the byte itself, unless it is one of  \ ^ $ . | ? * + ( ) [
///     .              any byte but the line end
///     [abc] [^a-z]   one byte out of a class, or one that is not in it; a ] right at its front is part of it
///     \d \w \s       a digit; a letter, digit or underscore; a blank (space \t \n \r \f \v)
///     \D \W \S       any other byte than those
///     \t \n \r \f \a \e \x41      a control byte, or the byte with this code of two hexadecimal digits
///     \. and so on   the byte itself, for all but letters and digits
///     (p) (?:p)      a group, which becomes a sub-match; a group that does not
///     p|q            one or the other; each may be empty
///     * + ? {m} {m,} {m,n}        repeats what stands in front; with a further ? as seldom as possible
///     ^ $            the beginning of the text; its end, or the line end that ends it
///     \A \z \Z       the beginning of the text; its end; its end, or the line end that ends it
///     \b \B          the edge of a word; any other place
///
/// Inside a class the escapes hold as well, with \b as the backspace. A brace that begins no count stands
/// for itself. A group in a repetition gives what it matched last. An iteration that matches nothing ends
/// its repetition, so that (a*)* or (|a)+ end, the group then being empty. References to groups, looking
/// ahead and behind, named classes as [[:alpha:]] and possessive repetitions are not known and refused.
///
/// Limits, beyond which a pattern is refused: groups nested 1,000 deep; counts of 65,535; 20,000
/// instructions, of which a byte or a class takes one and a repetition with a count as many as it
/// repeats, each but those counted once more for each repetition around it of what may match nothing; 25,000
/// for the number of bytes and classes times that of groups, the whole match included.
class PATTERNMATCHER_EXPORT PatternMatcher
{
public:
    /// Bits for the constructor.
    enum Flags
    {
        eDefault = 0,
        eIgnoreCase = 1,  ///< letters match in both cases
        eLineAnchors = 2, ///< ^ and $ match at each line, too; a line end that ends the text begins no line
        eDotMatchesLineEnd = 4 ///< the dot matches every byte
    };

    class Matches;

    /// Compiles the pattern, which ends with a zero byte. Throws std::invalid_argument for a null pointer,
    /// for unknown flags, and for a wrong pattern with a text that names the pattern and the place.
    explicit PatternMatcher(char const * pattern, int flags = eDefault);
    ~PatternMatcher();

    PatternMatcher(PatternMatcher const &) = delete;
    PatternMatcher & operator=(PatternMatcher const &) = delete;

    /// Searches the text from the byte start on and keeps the positions of the match for substr; one thread
    /// at a time may therefore use an object this way. 0 if nothing matches, also if start lies behind the
    /// text; otherwise the number of groups, the whole match included, so at least 1. What stands in front
    /// of start still counts for ^ and `\b`.
    unsigned int Match(std::string const & text, unsigned int start) const;

    /// The text of a sub-match of the last Match, whose text is to be given again; index 0 is the whole
    /// match, further ones are the groups in the order of their opening brackets. Empty if there was no
    /// match, for a group that took no part in it, and for an index or a position that does not exist.
    std::string substr(std::string const & text, unsigned int index) const;

    /// The same search, with the positions handed to the caller. Any number of threads may call it at
    /// the same time without waiting for each other, each with an object of its own for the result.
    unsigned int Match(std::string_view text, std::size_t start, Matches & oMatches) const;

private:
    struct Private;
    std::unique_ptr<Private> m;
};

/// The positions of a match and of its groups, filled in by PatternMatcher::Match.
///
/// It also holds the memory that searches need, and keeps it: once it has grown, further searches with it
/// allocate nothing. It may be used with any matcher and any text, by one thread at a time.
class PATTERNMATCHER_EXPORT PatternMatcher::Matches
{
public:
    /// The position of a group that took no part.
    static constexpr std::size_t npos = std::string_view::npos;

    Matches();
    ~Matches();

    Matches(Matches const &) = delete;
    Matches & operator=(Matches const &) = delete;

    /// What Match returned: the number of groups, the whole match included, or 0 without a match.
    unsigned int GetCount() const;

    /// Position of the first byte of a sub-match, and that of the byte behind it. npos for a group that took
    /// no part and for an index that does not exist.
    std::size_t GetBegin(unsigned int index) const;
    std::size_t GetEnd(unsigned int index) const;

    /// The part of the text between both positions, empty where there is none.
    std::string_view GetText(std::string_view text, unsigned int index) const;

private:
    friend class PatternMatcher;

    struct Private;
    std::unique_ptr<Private> m;
};

} // namespace tsl
