#pragma once

#include "IniLines.h"

#include <tessel/IniFile.h>

#include <functional>
#include <map>
#include <string>

/// An error or a note about a line of an ini file.
struct IniFinding
{
    enum class Weight
    {
        eError, ///< tsl::IniFile refuses the file
        eNote   ///< the line does not mean what it looks like
    };

    Weight eWeight;
    std::string sText;
    std::string sHint; ///< what to do about it; may be empty
};

/// Checks the lines of an ini file and continues after an error.
///
/// It has its own rules, since tsl::IniFile stops at the first error; only names are checked by IniFile. Its first
/// error has the line and text of IniFile's; a test compares both. After an error it assumes what the line was
/// probably meant to be, so that one mistake is reported once.
class IniChecker
{
public:
    using Report = std::function<void(IniLine const &, IniFinding const &)>;

    explicit IniChecker(Report fReport);

    /// Call it with every line, in order.
    void Check(IniLine const & oLine);

private:
    struct Chapter
    {
        long long iLine = 0;
        std::map<std::string, long long, std::less<>> oKeys; ///< with their lines
    };

    void CheckText(IniLine const & oLine, std::string_view sText);
    void CheckChapter(IniLine const & oLine, std::string_view sText);
    void CheckKey(IniLine const & oLine, std::string_view sText);
    void CheckValue(IniLine const & oLine, std::string_view sKey, std::string_view sValue);
    bool CheckSwitch(IniLine const & oLine, std::string_view sKey, std::string_view sValue);
    std::string GetNameFault(std::string_view sName) const;
    void ReportError(IniLine const & oLine, std::string sText, std::string sHint);
    void ReportNote(IniLine const & oLine, std::string sText, std::string sHint);

    Report m_fReport;
    tsl::IniFile m_oNames; // empty; checks names
    std::map<std::string, Chapter, std::less<>> m_oChapters;
    Chapter m_oUnnamed; // for the keys of a chapter whose line is wrong
    Chapter * m_pChapter = nullptr;
    std::string m_sChapter; // its name
    bool m_bKey = false;    // there is a key that a line can continue
};
