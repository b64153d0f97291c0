#include "IniHints.h"

#include <array>

namespace
{

constexpr std::string_view NAME_BYTES = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789/_";
constexpr std::string_view UTF8_MARK = "\xef\xbb\xbf";
constexpr std::array<std::string_view, 2> UTF16_MARKS = {"\xff\xfe", "\xfe\xff"};

bool LooksLikeComment(std::string_view sText)
{
    return sText.starts_with('#') || sText.starts_with("//");
}

/// Makes a valid name from an invalid one: "remote "origin"" becomes remote_origin, and a.b becomes a/b.
std::string MakeName(std::string_view sWrong)
{
    std::string sName;
    bool bGap = false;
    for (char const c : sWrong)
        if (c == '.' && !sName.empty())
            sName += '/';
        else if (NAME_BYTES.find(c) == std::string_view::npos)
            bGap = true;
        else
        {
            if (bGap && !sName.empty())
                sName += '_';
            bGap = false;
            sName += c;
        }
    return sName;
}

std::string HintAtName(std::string_view sName)
{
    std::string const sBetter = MakeName(sName);
    return "A name has letters of ASCII, digits, '/' and '_' only"
           + (sBetter.empty() ? std::string(".") : "; '" + sBetter + "' would be one.");
}

} // namespace

std::string HintAtMissingChapter(std::string_view sText)
{
    if (sText.starts_with(UTF8_MARK))
        return "The file begins with a byte order mark. Save it without one.";
    if (GetMarkLength(sText) > 0)
        return "The file is UTF-16. Save it as UTF-8 without a byte order mark.";
    if (LooksLikeComment(sText))
        return "Comments begin with ';'.";
    return "A line such as [Main] has to come first.";
}

std::string HintAtChapterName(std::string_view sName)
{
    return sName.empty() ? "A name has to stand between '[' and ']'." : HintAtName(sName);
}

std::string HintAtMissingEqual(std::string_view sText, bool bIndented)
{
    if (LooksLikeComment(sText))
        return "Comments begin with ';'.";
    if (sText.starts_with('!') || sText.starts_with("include"))
        return "A file cannot include another one.";
    if (bIndented)
        return "A value goes on in a line that begins with '+='.";
    if (sText.find(':') != std::string_view::npos)
        return "A value stands behind '=', not behind ':'.";
    return "A key without a value is written with '=' at its end.";
}

std::string HintAtKeyName(std::string_view sText, std::string_view sName)
{
    if (LooksLikeComment(sText))
        return "Comments begin with ';'.";
    if (sText == "+=")
        return "Behind '+=' a text is missing, with which the value goes on.";
    if (sName.empty())
        return "A name has to stand in front of '='.";
    return HintAtName(sName);
}

std::size_t GetMarkLength(std::string_view sText)
{
    if (sText.starts_with(UTF8_MARK))
        return UTF8_MARK.size();
    for (std::string_view const sMark : UTF16_MARKS)
        if (sText.starts_with(sMark))
            return sMark.size();
    return 0;
}
