#include "IniLines.h"

#include <tessel/String.h>

#include <algorithm>

static constexpr std::string_view CONTINUATION = "+=";

bool IniLineCutter::Next(IniLine & oLine)
{
    if (m_iAt == m_sContent.size())
        return false;

    std::string_view sWhole = m_sContent.substr(m_iAt, IniLine::LENGTH_MAX);
    sWhole = sWhole.substr(0, std::min(sWhole.find('\n'), sWhole.size() - 1) + 1);
    std::string_view const sText = GetTrimmed(sWhole.substr(0, sWhole.find('\0')));
    oLine = {++m_iNumber, m_iNumberShown, m_iAt, sWhole, sText, m_bRest, false};

    m_iAt += sWhole.size();
    std::string_view const sNext = m_sContent.substr(m_iAt, IniLine::LENGTH_MAX);
    oLine.bCut = !oLine.HasLineEnd() && !GetTrimmed(sNext.substr(0, sNext.find('\n'))).empty();
    m_bRest = !oLine.HasLineEnd();
    m_iNumberShown += m_bRest ? 0 : 1;
    return true;
}

std::string_view GetTrimmed(std::string_view sText)
{
    while (!sText.empty() && tsl::String::IsSpace(sText.front()))
        sText.remove_prefix(1);
    while (!sText.empty() && tsl::String::IsSpace(sText.back()))
        sText.remove_suffix(1);
    return sText;
}

IniLineKind GetKind(std::string_view sText)
{
    if (sText.empty() || sText.front() == ';')
        return IniLineKind::eNothing;
    if (sText.front() == '[')
        return IniLineKind::eChapter;
    // IniFile reads a line of "+=" alone as a key with the name "+".
    return sText.starts_with(CONTINUATION) && sText != CONTINUATION ? IniLineKind::eContinuation
                                                                    : IniLineKind::eKey;
}

IniParts GetParts(std::string_view sText, IniLineKind eKind)
{
    bool const bChapter = eKind == IniLineKind::eChapter;
    std::size_t const iSeparator = sText.find(bChapter ? ']' : '=');
    if (iSeparator == std::string_view::npos)
        return {{}, {}, false};
    std::size_t const iName = bChapter ? 1 : 0;
    return {
        GetTrimmed(sText.substr(iName, iSeparator - iName)), GetTrimmed(sText.substr(iSeparator + 1)), true};
}
