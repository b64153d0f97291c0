#include <tessel/IniFile.h>

#include "IniLineReader.h"
#include "IniName.h"
#include "IniParser.h"

#include <tessel/Assertion.h>
#include <tessel/OS.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>
#include <utility>

namespace tsl
{

namespace
{

/// Formats the texts.
template<class... Texts>
String FormatText(char const * sFormat, Texts const &... sTexts)
{
    String sText;
    sText.Format(sFormat, sTexts.c_str()...);
    return sText;
}

Result MakeReadFailure(String const & sName, long long iLine, Result const & oCause)
{
    String sText;
    sText.Format("Error while reading file '%s', line %lld.", sName.c_str(), iLine);
    return MakeResult(ERR::eBadData, sText, oCause);
}

Result MakeIoFailure(String const & sName, int iError)
{
    Result oResult = MakeResult(
        ERR::eBadData, String("IO-Error occoured while reading file '") + sName + "'.", Result::eCategoryIo);
    if (iError != 0)
        oResult.SetPrevious(OS::FormatError(iError));
    return oResult;
}

Result ReadChapters(IniLineReader & oReader, String const & sName, IniChapters & oChapters)
{
    IniParser oParser(oChapters);
    std::string_view sLine;
    long long iLine = 1;
    for (; oReader.Read(sLine); ++iLine)
        if (Result const oResult = oParser.ParseLine(sLine); oResult.IsError())
            return MakeReadFailure(sName, iLine, oResult);

    if (oReader.IsFailed())
        return MakeReadFailure(sName, iLine, MakeIoFailure(sName, oReader.GetError()));
    return Result();
}

/// Succeeds if writing the number again gives the same text.
bool ParseInt32(std::string_view sText, int & iValue)
{
    int iNumber = 0;
    char const * const pEnd = sText.data() + sText.size();
    auto const oRead = std::from_chars(sText.data(), pEnd, iNumber);
    if (oRead.ec != std::errc() || oRead.ptr != pEnd)
        return false;

    // No number but 0 is written with a zero in front.
    char const cFirstDigit = sText.front() == '-' ? sText[1] : sText[0];
    if (cFirstDigit == '0' && sText != "0")
        return false;

    iValue = iNumber;
    return true;
}

std::vector<String> Sort(std::vector<std::string_view> vNames)
{
    std::sort(vNames.begin(), vNames.end());

    std::vector<String> vSorted;
    vSorted.reserve(vNames.size());
    for (std::string_view const sName : vNames)
        vSorted.emplace_back(sName);
    return vSorted;
}

} // namespace

struct TSL_HIDDEN IniFile::Private
{
    void AssertOpen() const;
    std::optional<std::string_view> Find(String const & sChapter, String const & sKey) const;
    std::optional<std::string_view> FindExactly(String const & sChapter, String const & sKey) const;
    Result Explain(String const & sChapter, String const & sKey) const;
    Result MakeInvalidChapter(String const & sChapter, Result const & oCause) const;
    Result MakeUnknownChapter(ChapterName const & sChapter) const;

    IniChapters oChapters;
    String sFileName;
    bool bOpen = false;
};

IniFile::IniFile() : m(std::make_shared<Private>()) {}
IniFile::IniFile(IniFile const & oSource) = default;
IniFile & IniFile::operator=(IniFile const & oSource) = default;
IniFile::~IniFile() = default;

Result IniFile::Open(String const & sName)
{
    return Open(sName, std::numeric_limits<std::uint64_t>::max());
}

Result IniFile::Open(String const & sName, std::uint64_t iSizeMax)
{
    // A copy: sName may be the own name, which Close clears.
    String sFileName(sName);
    Close();

    IniLineReader oReader(iSizeMax);
    if (int const iError = oReader.Open(sFileName.c_str()))
        return MakeResult(
            ERR::eNotFound, String("Error while opening file '") + sFileName + "'.", OS::FormatError(iError));

    // Read into a local variable: an exception leaves the object closed and empty.
    IniChapters oChapters;
    Result oResult = ReadChapters(oReader, sFileName, oChapters);
    m->oChapters = std::move(oChapters);
    m->sFileName = std::move(sFileName);
    m->bOpen = true;
    return oResult;
}

Result IniFile::OpenEmpty()
{
    Close();
    m->bOpen = true;
    return Result();
}

void IniFile::Close()
{
    *m = Private();
}

bool IniFile::IsOpen() const
{
    return m->bOpen;
}

String const & IniFile::GetFileName() const
{
    return m->sFileName;
}

bool IniFile::GetString(String const & sChapter, String const & sKey, String & sValue) const
{
    auto const sFound = m->Find(sChapter, sKey);
    if (sFound)
        sValue = String(*sFound);
    return sFound.has_value();
}

bool IniFile::GetString(String const & sChapter, String const & sKey, String & sValue, Result & oResult) const
{
    bool const bFound = GetString(sChapter, sKey, sValue);

    // Cleared first: assigning a failure to a failure would add to its history.
    oResult.Clear();
    if (!bFound)
        oResult = m->Explain(sChapter, sKey);
    return bFound;
}

bool IniFile::GetInt32(String const & sChapter, String const & sKey, int & iValue) const
{
    auto const sFound = m->Find(sChapter, sKey);
    return sFound && ParseInt32(*sFound, iValue);
}

bool IniFile::GetInt32(String const & sChapter, String const & sKey, int & iValue, Result & oResult) const
{
    String sText;
    if (!GetString(sChapter, sKey, sText, oResult))
        return false;
    if (ParseInt32(sText.s_str(), iValue))
        return true;

    oResult = MakeResult(ERR::eBadData,
        FormatText("Error accessing IniFile '%s'. Key '%s' in chapter '%s' is no valid integer.",
            m->sFileName, sKey, sChapter),
        Result::eCategoryFault);
    return false;
}

void IniFile::GetChapters(std::vector<String> & vNames) const
{
    m->AssertOpen();
    std::vector<std::string_view> vFound;
    for (auto const & [sName, oKeys] : m->oChapters)
        vFound.push_back(sName);
    vNames = Sort(vFound);
}

Result IniFile::GetKeys(String const & sChapter, std::vector<String> & vNames) const
{
    m->AssertOpen();

    // A copy: sChapter may be an element of vNames, which is cleared.
    String const sAsked(sChapter);
    vNames.clear();

    ChapterName const sName(sAsked.s_str());
    if (Result const oCause = sName.Validate(); oCause.IsError())
        return m->MakeInvalidChapter(sAsked, oCause);
    auto const oChapter = m->oChapters.find(sName.s_str());
    if (oChapter == m->oChapters.end())
        return m->MakeUnknownChapter(sName);

    vNames = Sort(oChapter->second.GetNames());
    return Result::Null();
}

void IniFile::Private::AssertOpen() const
{
    if (!bOpen)
        XAssertionFailed("IsOpen()", "IniFile not open.");
}

std::optional<std::string_view> IniFile::Private::Find(String const & sChapter, String const & sKey) const
{
    AssertOpen();

    // Fast path (R07): an exact match needs no trimming and no validation. The empty key must not be found.
    if (!sKey.IsEmpty())
        if (auto const sFound = FindExactly(sChapter, sKey))
            return sFound;

    ChapterName const sChapterName(sChapter.s_str());
    KeyName const sKeyName(sKey.s_str());
    if (sChapterName.Validate().IsError() || sKeyName.Validate().IsError())
        return std::nullopt;
    return FindExactly(sChapterName, sKeyName);
}

std::optional<std::string_view> IniFile::Private::FindExactly(
    String const & sChapter, String const & sKey) const
{
    auto const oChapter = oChapters.find(sChapter.s_str());
    if (oChapter == oChapters.end())
        return std::nullopt;
    return oChapter->second.FindValue(sKey.s_str());
}

/// The reason why Find finds nothing.
Result IniFile::Private::Explain(String const & sChapter, String const & sKey) const
{
    ChapterName const sChapterName(sChapter.s_str());
    KeyName const sKeyName(sKey.s_str());
    if (Result const oCause = sChapterName.Validate(); oCause.IsError())
        return MakeInvalidChapter(sChapter, oCause);
    if (Result const oCause = sKeyName.Validate(); oCause.IsError())
        return MakeResult(ERR::eBadData,
            FormatText("Error accessing IniFile '%s'. KeyName '%s' not valid.", sFileName, sKey), oCause);
    if (!oChapters.contains(sChapterName.s_str()))
        return MakeUnknownChapter(sChapterName);
    return MakeResult(ERR::eBadData,
        FormatText("Error accessing IniFile '%s'. Key '%s' does not exist in chapter '%s'.", sFileName,
            sKeyName, sChapterName),
        Result::eCategoryFault);
}

Result IniFile::Private::MakeInvalidChapter(String const & sChapter, Result const & oCause) const
{
    return MakeResult(ERR::eBadData,
        FormatText("Error accessing IniFile '%s'. ChapterName '%s' not valid.", sFileName, sChapter), oCause);
}

Result IniFile::Private::MakeUnknownChapter(ChapterName const & sChapter) const
{
    return MakeResult(ERR::eBadData,
        FormatText("Error accessing IniFile '%s'. Chapter '%s' does not exist.", sFileName, sChapter),
        Result::eCategoryFault);
}

} // namespace tsl
