#pragma once

#include <patternmatcher/Export.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace tsl
{

/// A compiled regular expression that searches texts.
///
///     PatternMatcher const oPattern("(\\w+)=(\\d+)");
///     PatternMatcher::Matches oMatches;
///     std::string_view const sText("width=80");
///     if (oPattern.Match(sText, 0, oMatches) > 0)
///         std::cout << oMatches.GetText(sText, 2); // 80
///
/// A search finds the leftmost match. Of several that begin there it finds the one that Perl prefers: branches
/// from left to right, greedy repetitions long, lazy ones short. Its time is linear in the length of the text,
/// whatever the pattern, and at most linear in the pattern's instructions and groups. The limits below keep the
/// time for one byte under 0.2 milliseconds and the memory of a pattern with its searches under 8 MiB.
/// Searching and compiling use a few kilobytes of stack, even for long texts and deep patterns.
///
/// Apart from the last match, which substr reads, an object does not change: any number of threads may use the
/// Match that takes a Matches. Not copyable.
///
/// Texts are bytes: a zero byte is a byte like any other, a line ends with "\n", and letters, digits and
/// blanks are those of ASCII, whatever the locale. A pattern consists of:
///
/// ```
/// x              the byte itself, unless it is one of  \ ^ $ . | ? * + ( ) [
/// .              any byte but the line end
/// [abc] [^a-z]   one byte of a class, or one that is not in it; a ] as the first item is a byte
/// \d \w \s       a digit; a letter, digit or underscore; a blank (space \t \n \r \f \v)
/// \D \W \S       any other byte than those
/// \t \n \r \f \a \e \x41      a control byte, or the byte with this code of two hexadecimal digits
/// \. and so on   the byte itself, for every byte but letters and digits
/// (p) (?:p)      a group that becomes a sub-match; a group that does not
/// p|q            one or the other; each may be empty
/// * + ? {m} {m,} {m,n}        repeats the item before it; with another ? as seldom as possible
/// ^ $            the beginning of the text; its end, also before a line end that ends it
/// \A \z \Z       the beginning of the text; its end; its end, also before a line end that ends it
/// \b \B          the edge of a word; any other position
/// ```
///
/// Escapes work inside a class, too; \b is the backspace there. A brace that begins no count is an ordinary
/// byte. A group in a repetition reports its last iteration. An iteration that matches the empty text ends its
/// repetition, so (a*)* and (|a)+ end, with an empty group. Back references, lookaround, named classes such as
/// [[:alpha:]] and possessive repetitions are not supported and are errors.
///
/// Limits; a pattern beyond them is an error: groups nested 1,000 deep; counts up to 65,535; 20,000
/// instructions; and 25,000 for the number of bytes and classes times the number of groups, the whole match
/// included. A byte or a class takes one instruction, a repetition with a count as many as it repeats. Any
/// other instruction counts once more for each repetition around it whose item may match the empty text.
class PATTERNMATCHER_EXPORT PatternMatcher
{
public:
    /// Bits for the constructor.
    enum Flags
    {
        eDefault = 0,
        eIgnoreCase = 1,       ///< letters match in both cases
        eLineAnchors = 2,      ///< ^ and $ match at each line, too; no line begins after a final line end
        eDotMatchesLineEnd = 4 ///< the dot matches every byte
    };

    class Matches;

    /// Compiles the zero-terminated pattern. Throws std::invalid_argument for a null pointer, for unknown
    /// flags, and for an invalid pattern, with a text that names the pattern and the position of the error.
    explicit PatternMatcher(char const * pattern, int flags = eDefault);
    ~PatternMatcher();

    PatternMatcher(PatternMatcher const &) = delete;
    PatternMatcher & operator=(PatternMatcher const &) = delete;

    /// Searches the text from the byte start on and stores the positions of the match for substr, so only one
    /// thread at a time may use this. Returns 0 if nothing matches or start is beyond the end of the text;
    /// otherwise the number of groups, the whole match included, so at least 1. For ^ and `\b` the text
    /// before start counts as well.
    unsigned int Match(std::string const & text, unsigned int start) const;

    /// The text of a sub-match of the last Match; the argument must be the same text again. Index 0 is the
    /// whole match, the others are the groups in the order of their opening brackets. Empty if there was no
    /// match, if the group took no part in it, and for an index or a position that does not exist.
    std::string substr(std::string const & text, unsigned int index) const;

    /// The same search, which stores the positions in oMatches. Any number of threads may call it at the same
    /// time without waiting for each other, each with its own Matches.
    unsigned int Match(std::string_view text, std::size_t start, Matches & oMatches) const;

private:
    struct Private;
    std::unique_ptr<Private> m;
};

/// The positions of a match and its groups, set by PatternMatcher::Match.
///
/// It also owns the memory of the search: after that has grown, further searches with the same object
/// allocate nothing. It works with any PatternMatcher and any text, and does not refer to either. One thread
/// at a time.
class PATTERNMATCHER_EXPORT PatternMatcher::Matches
{
public:
    /// The position of a group that took no part in the match.
    static constexpr std::size_t npos = std::string_view::npos;

    Matches();
    ~Matches();

    Matches(Matches const &) = delete;
    Matches & operator=(Matches const &) = delete;

    /// The result of Match: the number of groups, the whole match included, or 0 without a match.
    unsigned int GetCount() const;

    /// The position of the first byte of a sub-match, and of the byte after its last one. npos for a group
    /// that took no part and for an index that does not exist.
    std::size_t GetBegin(unsigned int index) const;
    std::size_t GetEnd(unsigned int index) const;

    /// The part of the text between both positions; empty if they are npos. It refers to the text.
    std::string_view GetText(std::string_view text, unsigned int index) const;

private:
    friend class PatternMatcher;

    struct Private;
    std::unique_ptr<Private> m;
};

} // namespace tsl
