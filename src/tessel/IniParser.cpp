#include "IniParser.h"

#include "IniName.h"
#include "TrimmedText.h"

#include <utility>

namespace tsl
{

static constexpr std::string_view CONTINUATION = "+=";

Result IniParser::ParseLine(std::string_view sLine)
{
    std::string_view const sTrimmed = Trimmed(sLine);
    if (sTrimmed.empty() || sTrimmed.front() == ';')
        return Result();
    if (sTrimmed.front() == '[')
        return ParseChapter(sTrimmed);
    if (!m_pChapter)
        return MakeResult(ERR::eBadData, "Syntax error: Chaptername expected. ", Result::eCategoryFault);
    if (!sTrimmed.starts_with(CONTINUATION) || sTrimmed == CONTINUATION)
        return ParseKey(sTrimmed);

    ContinueValue(Trimmed(sTrimmed.substr(CONTINUATION.size())));
    return Result();
}

Result IniParser::ParseChapter(std::string_view sLine)
{
    IniKeyTable const * const pFormer = std::exchange(m_pChapter, nullptr);
    m_bKey = false;

    std::size_t const iClosing = sLine.find(']');
    if (iClosing == std::string_view::npos)
        return MakeResult(ERR::eBadData, "Syntax error: Token ']' expected.", Result::eCategoryFault);

    ChapterName const sName(sLine.substr(1, iClosing - 1));
    if (Result const oCause = sName.Validate(); oCause.IsError())
        return MakeResult(ERR::eBadData, "Syntax error: Name of chapter invalid.", oCause);

    auto const [oChapter, bNew] = m_oChapters.try_emplace(sName.s_str());
    if (!bNew)
        return MakeResult(ERR::eBadData, String("Syntax error: Chapter '") + sName + "' already exists.",
            Result::eCategoryFault);

    m_pChapter = &oChapter->second;
    if (pFormer)
        m_pChapter->ReserveLike(*pFormer); // R07: the chapters of a file often have the same size
    return Result();
}

Result IniParser::ParseKey(std::string_view sLine)
{
    std::size_t const iEqual = sLine.find('=');
    if (iEqual == std::string_view::npos)
        return MakeResult(ERR::eBadData, "Syntax error: Token '=' expected.", Result::eCategoryFault);

    // Only a name that is refused is copied (R07).
    std::string_view const sName = Trimmed(sLine.substr(0, iEqual));
    if (!IniName::IsName(sName))
        return MakeResult(ERR::eBadData, "Syntax error: Name of key invalid.", KeyName(sName).Validate());
    if (!m_pChapter->Add(sName, Trimmed(sLine.substr(iEqual + 1))))
        return MakeResult(ERR::eBadData,
            String("Syntax error: Key '") + String(sName) + "' already exists in this Chapter.",
            Result::eCategoryFault);

    m_bKey = true;
    return Result();
}

void IniParser::ContinueValue(std::string_view sMore)
{
    if (m_bKey)
    {
        m_pChapter->ExtendValue(" ");
        m_pChapter->ExtendValue(sMore);
        return;
    }

    // Adds the empty name. It is listed but cannot be looked up, so the text is not stored, and a second such
    // line adds nothing.
    static_cast<void>(m_pChapter->Add("", ""));
}

} // namespace tsl
