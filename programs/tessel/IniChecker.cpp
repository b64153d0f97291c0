#include "IniChecker.h"

#include "../shared/NearestName.h"
#include "IniHints.h"

#include <tessel/Result.h>
#include <tessel/String.h>
#include <tessel/ValueString.h>

#include <algorithm>
#include <utility>

namespace
{

constexpr std::string_view SWITCH_CHAPTER = "Debug/Switch";

/// The log points of the library.
std::vector<std::string> const & GetSwitches()
{
    static std::vector<std::string> const vSwitches = {
        "CmdLine", "LibraryProxy", "Pipe", "Task", "TaskContext", "TaskContextThread", "Thread"};
    return vSwitches;
}

bool IsNumber(std::string_view sText)
{
    if (sText.starts_with('-') || sText.starts_with('+'))
        sText.remove_prefix(1);
    return !sText.empty()
           && std::all_of(sText.begin(), sText.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/// A number in the form that IniFile::GetInt32 accepts, unless it is too large.
std::string MakePlain(std::string_view sNumber)
{
    bool const bNegative = sNumber.starts_with('-');
    std::size_t const iDigit = sNumber.find_first_not_of("+-0");
    if (iDigit == std::string_view::npos)
        return "0";
    return (bNegative ? "-" : "") + std::string(sNumber.substr(iDigit));
}

bool IsQuoted(std::string_view sValue)
{
    return sValue.size() >= 2 && (sValue.front() == '"' || sValue.front() == '\'')
           && sValue.front() == sValue.back();
}

/// The position at which a comment would begin, if values could have comments.
std::size_t FindComment(std::string_view sValue)
{
    for (std::size_t i = 0; i < sValue.size(); ++i)
        if ((sValue[i] == ';' || sValue[i] == '#') && (i == 0 || tsl::String::IsSpace(sValue[i - 1])))
            return i;
    return std::string_view::npos;
}

std::string InQuotes(std::string_view sText)
{
    return "'" + std::string(sText) + "'";
}

/// The value for a message: shortened, and without characters that control a terminal.
std::string ShowValue(std::string_view sValue)
{
    constexpr std::size_t LENGTH_MAX = 40;
    std::string sShown(sValue.substr(0, LENGTH_MAX));
    std::replace_if(sShown.begin(), sShown.end(), &tsl::String::IsCntrl, '?');
    return InQuotes(sShown + (sValue.size() > LENGTH_MAX ? "..." : ""));
}

} // namespace

IniChecker::IniChecker(Report fReport) : m_fReport(std::move(fReport))
{
    static_cast<void>(m_oNames.OpenEmpty()); // always a success
}

void IniChecker::Check(IniLine const & oLine)
{
    if (oLine.bCut)
        ReportNote(oLine, "The line has more than 499 bytes.",
            "Its rest counts as a line of its own. A value goes on in a line that begins with '+='.");
    if (oLine.sWhole.find('\0') != std::string_view::npos)
        ReportNote(oLine, "The line has a zero byte, where it ends.", "");
    CheckText(oLine, oLine.sText);
}

void IniChecker::CheckText(IniLine const & oLine, std::string_view sText)
{
    IniLineKind const eKind = GetKind(sText);
    if (eKind == IniLineKind::eNothing)
        return;
    if (eKind == IniLineKind::eChapter)
        return CheckChapter(oLine, sText);
    if (!m_pChapter)
    {
        ReportError(oLine, "Syntax error: Chaptername expected. ", HintAtMissingChapter(sText));
        m_pChapter = &m_oUnnamed;
        // After a byte order mark the line may be correct.
        if (std::size_t const iMark = GetMarkLength(sText); iMark > 0 && sText.substr(iMark).starts_with('['))
            CheckChapter(oLine, sText.substr(iMark));
        return;
    }
    if (eKind == IniLineKind::eKey)
        return CheckKey(oLine, sText);
    if (!m_bKey)
        ReportNote(
            oLine, "There is no key that the line continues.", "Its text cannot be read by any program.");
}

void IniChecker::CheckChapter(IniLine const & oLine, std::string_view sText)
{
    m_oUnnamed = Chapter();
    m_pChapter = &m_oUnnamed;
    m_sChapter.clear();
    m_bKey = false;

    IniParts const oParts = GetParts(sText, IniLineKind::eChapter);
    if (!oParts.bSeparator)
        return ReportError(oLine, "Syntax error: Token ']' expected.", "A chapter is written [Name].");
    if (std::string const sFault = GetNameFault(oParts.sName); !sFault.empty())
        return ReportError(
            oLine, "Syntax error: Name of chapter invalid. " + sFault, HintAtChapterName(oParts.sName));

    auto const [oChapter, bNew] = m_oChapters.try_emplace(std::string(oParts.sName));
    m_pChapter = &oChapter->second;
    m_sChapter = oParts.sName;
    if (!bNew)
        return ReportError(oLine, "Syntax error: Chapter " + InQuotes(oParts.sName) + " already exists.",
            "It begins in line " + std::to_string(m_pChapter->iLine) + "; its keys have to stand there.");
    m_pChapter->iLine = oLine.iNumber;
    if (!oParts.sRest.empty() && GetKind(oParts.sRest) != IniLineKind::eNothing
        && oParts.sRest.front() != '#')
        ReportNote(oLine, "What stands behind ']' does not count.", "");
}

void IniChecker::CheckKey(IniLine const & oLine, std::string_view sText)
{
    IniParts const oParts = GetParts(sText, IniLineKind::eKey);
    if (!oParts.bSeparator)
        return ReportError(oLine, "Syntax error: Token '=' expected.",
            HintAtMissingEqual(sText, m_bKey && tsl::String::IsSpace(oLine.sWhole.front())));

    // The next lines may continue this key, even if it is wrong.
    bool const bFormerKey = std::exchange(m_bKey, true);
    if (std::string const sFault = GetNameFault(oParts.sName); !sFault.empty())
    {
        m_bKey = bFormerKey || sText != "+=";
        return ReportError(
            oLine, "Syntax error: Name of key invalid. " + sFault, HintAtKeyName(sText, oParts.sName));
    }
    auto const [oKey, bNew] = m_pChapter->oKeys.try_emplace(std::string(oParts.sName), oLine.iNumber);
    if (!bNew)
        return ReportError(oLine,
            "Syntax error: Key " + InQuotes(oParts.sName) + " already exists in this Chapter.",
            "It is in line " + std::to_string(oKey->second)
                + ", too. A list is one value, which goes on in lines that begin with '+='.");
    CheckValue(oLine, oParts.sName, oParts.sRest);
}

void IniChecker::CheckValue(IniLine const & oLine, std::string_view sKey, std::string_view sValue)
{
    if (CheckSwitch(oLine, sKey, sValue))
        return;
    if (IsQuoted(sValue))
        ReportNote(oLine, "The quotes are part of the value.",
            "Values need none; blanks at their ends do not count.");
    else if (IsNumber(sValue) && sValue != MakePlain(sValue))
        ReportNote(oLine, ShowValue(sValue) + " is a text, but no number.",
            "A number is written without '+' and leading zeros: " + MakePlain(sValue));
    else if (sValue.size() > 1 && sValue.ends_with('\\') && tsl::String::IsSpace(sValue[sValue.size() - 2]))
        ReportNote(oLine, "The '\\' at the end is part of the value.",
            "A value goes on in a line that begins with '+='.");
    else if (std::size_t const iComment = FindComment(sValue); iComment != std::string_view::npos)
        ReportNote(oLine, InQuotes(sValue.substr(iComment, 1)) + " and what follows is part of the value.",
            "A comment is a line of its own that begins with ';'.");
}

/// Checks the keys that the library reads. Returns true if it has reported something.
bool IniChecker::CheckSwitch(IniLine const & oLine, std::string_view sKey, std::string_view sValue)
{
    bool const bSwitch = m_sChapter == SWITCH_CHAPTER;
    if (!bSwitch && (m_sChapter != "Debug" || sKey != "Enable"))
        return false;
    bool bReported = false;
    if (!IsNumber(sValue) || sValue != MakePlain(sValue))
    {
        ReportNote(oLine, ShowValue(sValue) + " is no number, so it counts as 0.", "1 switches on.");
        bReported = true;
    }

    // A program may have log points of its own, which are unknown here; so only near misses are reported.
    std::vector<std::string> const & vSwitches = GetSwitches();
    std::string const sNearest = GetNearestName(sKey, vSwitches);
    if (!bSwitch || sNearest.empty() || sNearest == sKey)
        return bReported;
    ReportNote(oLine, "The library has no log point " + InQuotes(sKey) + ".",
        "Did you mean " + InQuotes(sNearest) + "?");
    return true;
}

/// The library's text for a wrong name; empty if the name is valid.
std::string IniChecker::GetNameFault(std::string_view sName) const
{
    // A valid name fails as well, since there is no such chapter, but then the failure has no cause.
    std::vector<tsl::String> vKeys;
    tsl::Result const oResult = m_oNames.GetKeys(tsl::String(sName), vKeys);
    return oResult.GetHistorySize() == 0 ? std::string() : oResult.GetHistory(0).GetText().s_str();
}

void IniChecker::ReportError(IniLine const & oLine, std::string sText, std::string sHint)
{
    if (oLine.bRest)
        sHint = "This is the rest of a line of more than 499 bytes.";
    m_fReport(oLine, {IniFinding::Weight::eError, std::move(sText), std::move(sHint)});
}

void IniChecker::ReportNote(IniLine const & oLine, std::string sText, std::string sHint)
{
    m_fReport(oLine, {IniFinding::Weight::eNote, std::move(sText), std::move(sHint)});
}
