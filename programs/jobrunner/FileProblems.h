#pragma once

#include <tessel/Result.h>
#include <tessel/String.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

/// What is wrong in an ini file, with the places.
class FileProblems
{
public:
    /// Reads the lines of the file, since tsl::IniFile does not tell them. One that is longer than tsl::IniFile takes is
    /// a problem.
    explicit FileProblems(tsl::String const & sFile);

    /// The key may be empty.
    void Add(tsl::String const & sChapter, tsl::String const & sKey, std::string const & sText);

    bool IsEmpty() const { return m_vProblems.empty(); }

    /// A failure of code 2: the first problem is its text, and all others are its history. A success without problems.
    tsl::Result GetFailure() const;

private:
    void ReadLine(std::string const & sLine, int iLine, std::string & sChapter);
    void Add(int iLine, std::string const & sText);

    std::string m_sFile;
    std::map<std::pair<std::string, std::string>, int> m_oLines; ///< by chapter and key
    std::vector<std::string> m_vProblems;
};
