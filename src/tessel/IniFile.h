#pragma once

#include <tessel/Export.h>
#include <tessel/Result.h>
#include <tessel/String.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace tsl
{

/// A configuration file, read whole into memory: chapters with keys and values. Nothing is written back.
///
///     ; a comment
///     [Chapter]
///     Key = a value
///     += and its next line
///
/// Lines count without white space at both ends; lines that are empty then or begin with ";" are skipped.
/// A chapter line holds the name in brackets, and what stands behind them does not matter. A key line
/// holds name and value around the first "="; there is no quoting, and a value may be empty. A longer line
/// that begins with "+=" extends the value of the key above it by one blank and its text. Names consist
/// of letters, digits, "/" and "_", and are case-sensitive; a chapter may occur once in a file, and a key
/// once in a chapter. White space around a name does not count, in the file and in a query. A line of more
/// than 499 bytes is cut there, and its rest is a line of its own; a zero byte ends the text of a line.
///
/// Only an open file may be asked; asking a closed one is an assertion failure. A getter that fails leaves
/// the value as it was, so that a caller presets it with a default. The reasons of failures are formatted
/// texts: one that names so much that it exceeds String::FORMAT_LENGTH_MAX is an assertion failure.
///
/// The time to open a file is in proportion to its size, and a value is found in the same time whatever that is,
/// both on average. A list of n names is made in O(n log n).
///
/// Once Open has returned, any number of threads may ask. Copies share one content.
class TSL_EXPORT IniFile
{
public:
    /// Not open.
    IniFile();
    IniFile(IniFile const & oSource);
    IniFile & operator=(IniFile const & oSource);
    virtual ~IniFile();

    /// Drops what there is and reads the file.
    ///
    /// Code 5 with the system's error as previous failure: the file cannot be opened, and the object is
    /// closed. Only regular files can; a pipe or a device is never waited for. Code 2 with the cause as
    /// previous failure: a line breaks the rules (category 2) or the file cannot be read (category 1). The
    /// object is open all the same with what stands above that line.
    [[nodiscard]] Result Open(String const & sName);

    /// Drops what there is; an open file without chapters and without a name. Always a success.
    [[nodiscard]] Result OpenEmpty();

    /// Drops what there is.
    void Close();

    bool IsOpen() const;

    /// The name of the file that was opened last, else empty. It holds until the next change.
    String const & GetFileName() const;

    /// The value of a key.
    bool GetString(String const & sChapter, String const & sKey, String & sValue) const;

    /// The same with the reason: a success, or code 2, category 2 for a bad or an unknown name.
    bool GetString(String const & sChapter, String const & sKey, String & sValue, Result & oResult) const;

    /// The value of a key as a number. It has to be the number as it is written by itself: no plus sign,
    /// no leading zeros, nothing around it.
    bool GetInt32(String const & sChapter, String const & sKey, int & iValue) const;

    /// The same with the reason; code 2, category 2 as well for a value that is no such number.
    bool GetInt32(String const & sChapter, String const & sKey, int & iValue, Result & oResult) const;

    /// Replaces the names by those of all chapters in ascending order of their bytes.
    void GetChapters(std::vector<String> & vNames) const;

    /// Replaces the names by those of all the chapter's keys in ascending order of their bytes; empties
    /// them on failure. Code 2, category 2 for a bad or an unknown name. A key with an empty name, which
    /// comes from an extending line without a key above it, is listed and cannot be asked for.
    [[nodiscard]] Result GetKeys(String const & sChapter, std::vector<String> & vNames) const;

private:
    friend class GlobalApplicationIni;
    struct Private;

    /// Open for a file of at most so many bytes; to read a larger one fails.
    TSL_HIDDEN Result Open(String const & sName, std::uint64_t iSizeMax);

    std::shared_ptr<Private> m;
};

} // namespace tsl
