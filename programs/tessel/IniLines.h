#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

/// A line as tsl::IniFile reads it: at most LENGTH_MAX bytes. The rest of a longer line is a line of its own.
struct IniLine
{
    static constexpr std::size_t LENGTH_MAX = 499;

    long long iNumber;       ///< as IniFile counts
    long long iNumberShown;  ///< as an editor counts
    std::size_t iBegin;      ///< position in the file
    std::string_view sWhole; ///< with its line end, if it has one
    std::string_view sText;  ///< without white space at its ends, and only up to the first zero byte

    bool HasLineEnd() const { return sWhole.ends_with('\n'); }

    bool bRest; ///< the rest of a line that was too long
    bool bCut;  ///< the line is too long, and its rest is more than white space
};

/// Splits the content of a file into lines.
class IniLineCutter
{
public:
    /// The content must outlive all lines.
    explicit IniLineCutter(std::string_view sContent) : m_sContent(sContent) {}

    bool Next(IniLine & oLine);

private:
    std::string_view m_sContent;
    std::size_t m_iAt = 0;
    long long m_iNumber = 0;
    long long m_iNumberShown = 1;
    bool m_bRest = false;
};

/// The text without the white space at its ends, by the library's rule.
std::string_view GetTrimmed(std::string_view sText);

enum class IniLineKind
{
    eNothing, ///< empty or a comment
    eChapter,
    eContinuation,
    eKey
};

/// The kind of a line, by its first characters.
IniLineKind GetKind(std::string_view sText);

/// The texts before and after the separator, which is "]" or "="; both trimmed.
struct IniParts
{
    std::string_view sName;
    std::string_view sRest;
    bool bSeparator;
};

/// The parts of a chapter line or a key line.
IniParts GetParts(std::string_view sText, IniLineKind eKind);
