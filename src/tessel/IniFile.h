#pragma once

#include <tessel/Export.h>
#include <tessel/Result.h>
#include <tessel/String.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace tsl
{

/// A configuration file with chapters, keys and values, read completely into memory. It is never written.
///
///     IniFile oFile;
///     int iPort = 8080; // the default
///     if (oFile.Open("server.ini").IsOk())
///         oFile.GetInt32("Net", "Port", iPort);
///
/// The format:
///
/// ```
/// ; a comment
/// [Chapter]
/// Key = a value
/// += and its next line
/// ```
///
/// White space at both ends of a line and around names is ignored; empty lines and lines that begin with ";"
/// are skipped. A chapter line has the name in brackets; the rest of the line is ignored. A key line has name
/// and value around the first "="; there are no quotes, and a value may be empty. "+=" with a text extends
/// the value of the key above by a blank and the text. Names consist of letters, digits, "/" and "_" and are
/// case-sensitive. A chapter may occur once in a file, a key once in a chapter. After 499 bytes a line is
/// split, and its rest is a line of its own. A zero byte ends the text of a line.
///
/// Getters need an open file, else they are assertion failures. A getter that fails leaves the value as it
/// was, so set a default before. A reason of a failure that exceeds String::FORMAT_LENGTH_MAX is an assertion
/// failure.
///
/// Opening takes time in proportion to the size of the file, a lookup constant time, both on average. A list
/// of n names takes O(n log n). After Open any number of threads may call the getters. Copies share one
/// content.
class TSL_EXPORT IniFile
{
public:
    /// Not open.
    IniFile();
    IniFile(IniFile const & oSource);
    IniFile & operator=(IniFile const & oSource);
    virtual ~IniFile();

    /// Closes the present file and reads another one. Only regular files can be opened; it never waits for a
    /// pipe or a device.
    ///
    /// Code 5 with the system's error as previous failure: the file cannot be opened; the object is closed.
    /// Code 2 with the reason as previous failure: a line has an error (category 2) or the file cannot be
    /// read (category 1); the object is open with the content before that line.
    [[nodiscard]] Result Open(String const & sName);

    /// Closes the present file and becomes an open file without chapters and name. Always a success.
    [[nodiscard]] Result OpenEmpty();

    /// Discards the content. Does nothing to a closed object.
    void Close();

    /// Whether getters may be called.
    bool IsOpen() const;

    /// The name of the open file; empty if closed and after OpenEmpty. Valid until the next change.
    String const & GetFileName() const;

    /// The value of a key. False if a name is invalid or unknown.
    bool GetString(String const & sChapter, String const & sKey, String & sValue) const;

    /// The same with the reason of a failure, code 2 and category 2.
    bool GetString(String const & sChapter, String const & sKey, String & sValue, Result & oResult) const;

    /// The value of a key as a decimal number without plus sign, leading zeros or other characters.
    bool GetInt32(String const & sChapter, String const & sKey, int & iValue) const;

    /// The same with the reason of a failure, code 2 and category 2.
    bool GetInt32(String const & sChapter, String const & sKey, int & iValue, Result & oResult) const;

    /// Replaces vNames by the names of all chapters, in ascending order of their bytes.
    void GetChapters(std::vector<String> & vNames) const;

    /// Replaces vNames by the names of the chapter's keys, in ascending order of their bytes. Code 2,
    /// category 2 for an invalid or unknown chapter; vNames is then empty. A "+=" line without a key above it
    /// adds a key with an empty name, which is listed but cannot be looked up.
    [[nodiscard]] Result GetKeys(String const & sChapter, std::vector<String> & vNames) const;

private:
    friend class GlobalApplicationIni;
    struct Private;

    /// Open with a limit: reading a file of more bytes fails.
    TSL_HIDDEN Result Open(String const & sName, std::uint64_t iSizeMax);

    std::shared_ptr<Private> m;
};

} // namespace tsl
