#include "FileProblems.h"

#include <tessel/ValueString.h>

#include <fstream>

namespace
{

// With its line end. tsl::IniFile takes what follows for a line of its own.
constexpr std::size_t LINE_LENGTH_MAX = 499;

std::string GetTrimmed(std::string const & sText)
{
    tsl::String sTrimmed(sText);
    sTrimmed.Trim();
    return sTrimmed.s_str();
}

} // namespace

FileProblems::FileProblems(tsl::String const & sFile) : m_sFile(sFile.s_str())
{
    std::ifstream oStream(m_sFile, std::ios::binary);
    std::string sChapter;
    int iLine = 0;
    for (std::string sLine; std::getline(oStream, sLine);)
        ReadLine(sLine, ++iLine, sChapter);
}

void FileProblems::ReadLine(std::string const & sLine, int iLine, std::string & sChapter)
{
    if (sLine.size() >= LINE_LENGTH_MAX && !GetTrimmed(sLine.substr(LINE_LENGTH_MAX)).empty())
        Add(iLine, "The line has more than 499 bytes. A value goes on in a line that begins with '+='.");
    std::string const sText = GetTrimmed(sLine);
    if (sText.starts_with('['))
    {
        sChapter = GetTrimmed(sText.substr(1, sText.find(']') - 1));
        m_oLines.try_emplace({sChapter, ""}, iLine);
    }
    else if (!sText.starts_with(';'))
        m_oLines.try_emplace({sChapter, GetTrimmed(sText.substr(0, sText.find('=')))}, iLine);
}

void FileProblems::Add(tsl::String const & sChapter, tsl::String const & sKey, std::string const & sText)
{
    auto oLine = m_oLines.find({sChapter.s_str(), sKey.s_str()});
    if (oLine == m_oLines.end())
        oLine = m_oLines.find({sChapter.s_str(), ""});
    Add(oLine == m_oLines.end() ? 0 : oLine->second,
        '[' + sChapter.s_str() + "] " + sKey.s_str() + (sKey.IsEmpty() ? "" : ": ") + sText);
}

void FileProblems::Add(int iLine, std::string const & sText)
{
    m_vProblems.push_back(m_sFile + (iLine > 0 ? ':' + std::to_string(iLine) : "") + ": " + sText);
}

tsl::Result FileProblems::GetFailure() const
{
    tsl::Result oResult;
    for (auto pProblem = m_vProblems.rbegin(); pProblem != m_vProblems.rend(); ++pProblem)
        oResult.InsertFront(
            tsl::MakeResult(tsl::ERR::eBadData, tsl::String(*pProblem), tsl::Result::eCategoryFault));
    return oResult;
}
