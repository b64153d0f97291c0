#include "IniEdit.h"

#include "IniLines.h"

#include <tessel/Result.h>
#include <tessel/String.h>

#include <algorithm>
#include <map>
#include <vector>

namespace
{

/// The positions in the content that an edit needs.
struct EditPlaces
{
    std::optional<IniLine> oKey;
    std::vector<IniLine> vContinuations; // of the key
    std::optional<IniLine> oLastOfChapter;
};

EditPlaces FindPlaces(std::string_view sContent, IniPlace const & oPlace)
{
    EditPlaces oPlaces;
    bool bInChapter = false;
    bool bAtKey = false;
    IniLineCutter oCutter(sContent);
    for (IniLine oLine; oCutter.Next(oLine);)
    {
        IniLineKind const eKind = GetKind(oLine.sText);
        if (eKind == IniLineKind::eNothing)
            continue;
        if (eKind == IniLineKind::eChapter)
            bInChapter = GetParts(oLine.sText, eKind).sName == oPlace.sChapter;
        if (!bInChapter)
            continue;
        oPlaces.oLastOfChapter = oLine;
        if (eKind == IniLineKind::eContinuation && bAtKey)
            oPlaces.vContinuations.push_back(oLine);
        if (eKind != IniLineKind::eContinuation)
            bAtKey = eKind == IniLineKind::eKey && GetParts(oLine.sText, eKind).sName == oPlace.sKey;
        if (bAtKey && eKind == IniLineKind::eKey)
            oPlaces.oKey = oLine;
    }
    return oPlaces;
}

/// Returns "\r\n" if the text ends with it, else "\n".
std::string GetLineEnd(std::string_view sText)
{
    return sText.ends_with("\r\n") ? "\r\n" : "\n";
}

/// The line with another value and the same spaces.
std::string ChangeLine(IniLine const & oLine, std::string_view sValue)
{
    std::size_t const iEqual = oLine.sWhole.find('=');
    std::size_t const iValue =
        std::min(oLine.sWhole.find_first_not_of(" \t", iEqual + 1), oLine.sWhole.size());
    std::string sLine(oLine.sWhole.substr(0, iValue));
    sLine += sValue;
    return oLine.HasLineEnd() ? sLine + GetLineEnd(oLine.sWhole) : sLine;
}

std::string InsertLines(std::string_view sContent, std::size_t iAt, std::string sLines)
{
    std::string sNew(sContent.substr(0, iAt));
    if (!sNew.empty() && !sNew.ends_with('\n'))
        sNew += GetLineEnd(sContent.substr(0, sContent.find('\n') + 1));
    return sNew + sLines + std::string(sContent.substr(iAt));
}

std::map<std::string, std::string> GetAll(tsl::IniFile const & oFile)
{
    std::map<std::string, std::string> oAll;
    std::vector<tsl::String> vChapters;
    std::vector<tsl::String> vKeys;
    oFile.GetChapters(vChapters);
    for (tsl::String const & sChapter : vChapters)
    {
        oAll[sChapter.s_str() + ']'];
        if (oFile.GetKeys(sChapter, vKeys).IsError())
            continue;
        tsl::String sValue;
        for (tsl::String const & sKey : vKeys)
            if (oFile.GetString(sChapter, sKey, sValue))
                oAll[sChapter.s_str() + ']' + sKey.s_str()] = sValue.s_str();
    }
    return oAll;
}

} // namespace

std::optional<IniPlace> FindPlace(tsl::IniFile const & oFile, std::string_view sPath)
{
    std::optional<IniPlace> oLongest;
    std::optional<IniPlace> oKnown;
    for (std::size_t i = sPath.rfind('/'); i != std::string_view::npos && i > 0; i = sPath.rfind('/', i - 1))
    {
        IniPlace const oPlace = {
            std::string(GetTrimmed(sPath.substr(0, i))), std::string(GetTrimmed(sPath.substr(i + 1)))};
        tsl::String sValue;
        std::vector<tsl::String> vKeys;
        if (oFile.GetString(oPlace.sChapter, oPlace.sKey, sValue))
            return oPlace;
        if (!oKnown && oFile.GetKeys(oPlace.sChapter, vKeys).IsOk())
            oKnown = oPlace;
        if (!oLongest)
            oLongest = oPlace;
    }
    return oKnown ? oKnown : oLongest;
}

std::string SetIniValue(std::string_view sContent, IniPlace const & oPlace, std::string_view sValue)
{
    EditPlaces const oPlaces = FindPlaces(sContent, oPlace);
    if (oPlaces.oKey)
    {
        std::string sNew(sContent);
        for (auto it = oPlaces.vContinuations.rbegin(); it != oPlaces.vContinuations.rend(); ++it)
            sNew.erase(it->iBegin, it->sWhole.size());
        return sNew.replace(
            oPlaces.oKey->iBegin, oPlaces.oKey->sWhole.size(), ChangeLine(*oPlaces.oKey, sValue));
    }

    std::string const sEnd = GetLineEnd(sContent.substr(0, sContent.find('\n') + 1));
    std::string const sLine = oPlace.sKey + '=' + std::string(sValue) + sEnd;
    if (oPlaces.oLastOfChapter)
        return InsertLines(
            sContent, oPlaces.oLastOfChapter->iBegin + oPlaces.oLastOfChapter->sWhole.size(), sLine);
    return InsertLines(sContent, sContent.size(),
        (sContent.empty() ? "" : sEnd) + '[' + oPlace.sChapter + ']' + sEnd + sLine);
}

bool DifferOnlyAt(tsl::IniFile const & oBefore, tsl::IniFile const & oAfter, IniPlace const & oPlace,
    std::string_view sValue)
{
    std::map<std::string, std::string> oExpected = GetAll(oBefore);
    oExpected[oPlace.sChapter + ']'];
    oExpected[oPlace.sChapter + ']' + oPlace.sKey] = sValue;
    return GetAll(oAfter) == oExpected;
}
