#include "../shared/NearestName.h"
#include "../shared/System.h"
#include "Arguments.h"
#include "Command.h"
#include "IniChecker.h"
#include "IniEdit.h"

#include <tessel/IniFile.h>
#include <tessel/OS.h>
#include <tessel/String.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>

namespace
{

constexpr char HELP[] = R"(tessel ini checks ini files and reads or changes single keys.

  tessel ini FILE...                         every error of each file, with line, cause and hint, and a note on
                                             each line that is read in another way than it looks
  tessel ini --get CHAPTER/KEY FILE          the value of the key
  tessel ini --set CHAPTER/KEY=VALUE FILE    gives the key another value, or adds it; all other lines stay as they
                                             are, and the file is replaced in one step
  tessel ini --help                          this text

The exit code is 1 if a file has an error; notes do not count. A file whose name begins with '-' is given behind the
word '--'.
)";

std::vector<Option> const & GetOptions()
{
    static std::vector<Option> const vOptions = {{"--help", Option::Takes::eNothing},
        {"-h", Option::Takes::eNothing}, {"--get", Option::Takes::eValue}, {"--set", Option::Takes::eValue}};
    return vOptions;
}

tsl::Result MakeFailure(std::string const & sText)
{
    return tsl::MakeResult(tsl::ERR::eAccessDenied, tsl::String(sText));
}

tsl::Result MakeFailure(std::string const & sText, tsl::Result const & oCause)
{
    return tsl::MakeResult(tsl::ERR::eAccessDenied, tsl::String(sText), oCause);
}

/// Opens the file as a program would. A syntax error is no failure here: oSyntax gets the first one.
tsl::Result OpenIni(std::string const & sFile, tsl::IniFile & oFile, tsl::Result & oSyntax)
{
    oSyntax = oFile.Open(sFile);
    bool const bSyntax = oSyntax.IsOk()
                         || (oSyntax.GetErrorCode() == tsl::ERR::eBadData
                             && oSyntax.GetHistory(0).GetCategory() != tsl::Result::eCategoryIo);
    return bSyntax ? tsl::Result()
                   : MakeFailure("The file '" + sFile + "' cannot be read",
                       oSyntax.GetHistory(oSyntax.GetHistorySize() - 1));
}

tsl::Result ReadContent(std::string const & sFile, std::string & sContent)
{
    std::ifstream oStream(sFile, std::ios::binary);
    std::ostringstream oContent;
    oContent << oStream.rdbuf();
    sContent = oContent.str();
    return oStream.bad() ? MakeFailure("The file '" + sFile + "' cannot be read") : tsl::Result();
}

/// Writes file, line and text in the form of a compiler, and the hint in a line of its own.
void WriteFinding(
    Output & oOutput, std::string const & sFile, IniLine const & oLine, IniFinding const & oFinding)
{
    std::string sText = sFile + ':' + std::to_string(oLine.iNumber);
    if (oLine.iNumber != oLine.iNumberShown)
        sText += " (line " + std::to_string(oLine.iNumberShown) + " of the file)";
    sText += oFinding.eWeight == IniFinding::Weight::eNote ? ": Note: " : ": ";
    sText += GetTrimmed(oFinding.sText);
    if (!oFinding.sHint.empty())
        sText += "\n    " + oFinding.sHint;
    oOutput.Write(sText + '\n');
}

/// Checks a file and sets bErrors if it has errors. Code 1 if it cannot be read.
tsl::Result CheckFile(std::string const & sFile, Output & oOutput, bool & bErrors)
{
    tsl::IniFile oFile;
    tsl::Result oSyntax;
    if (tsl::Result oResult = OpenIni(sFile, oFile, oSyntax); oResult.IsError())
        return oResult;
    std::string sContent;
    if (tsl::Result oResult = ReadContent(sFile, sContent); oResult.IsError())
        return oResult;

    IniChecker oChecker(
        [&](IniLine const & oLine, IniFinding const & oFinding)
        {
            bErrors = bErrors || oFinding.eWeight == IniFinding::Weight::eError;
            WriteFinding(oOutput, sFile, oLine, oFinding);
        });
    IniLineCutter oCutter(sContent);
    for (IniLine oLine; oCutter.Next(oLine) && !oOutput.IsFailed();)
        oChecker.Check(oLine);
    return tsl::Result();
}

tsl::Result CheckFiles(
    std::vector<std::string> const & vFiles, Output & oOutput, ReportFailure const & fReport)
{
    int iWrong = 0;
    for (std::string const & sFile : vFiles)
    {
        bool bErrors = false;
        if (tsl::Result const oResult = CheckFile(sFile, oOutput, bErrors); oResult.IsError())
            fReport(oResult);
        iWrong += bErrors ? 1 : 0;
    }
    if (iWrong == 0)
        return tsl::Result();
    oOutput.Flush();
    return MakeFailure(
        std::to_string(iWrong) + " of " + std::to_string(vFiles.size()) + " files cannot be used.");
}

/// Opens a file; fails if it has errors.
tsl::Result OpenGoodIni(std::string const & sFile, tsl::IniFile & oFile)
{
    tsl::Result oSyntax;
    tsl::Result oResult = OpenIni(sFile, oFile, oSyntax);
    if (oResult.IsError() || oSyntax.IsOk())
        return oResult;
    return MakeFailure("The file '" + sFile + "' has errors; 'tessel ini FILE' shows all", oSyntax);
}

/// All keys of the file, from which a similar one is suggested.
std::vector<std::string> GetPaths(tsl::IniFile const & oFile)
{
    std::vector<std::string> vPaths;
    std::vector<tsl::String> vChapters;
    std::vector<tsl::String> vKeys;
    oFile.GetChapters(vChapters);
    for (tsl::String const & sChapter : vChapters)
        if (oFile.GetKeys(sChapter, vKeys).IsOk())
            for (tsl::String const & sKey : vKeys)
                vPaths.push_back(sChapter.s_str() + '/' + sKey.s_str());
    return vPaths;
}

/// Opens a file without errors and splits sPath. bFound is set if the file has the key.
tsl::Result FindKey(std::string const & sPath, std::string const & sFile, tsl::IniFile & oFile,
    IniPlace & oPlace, tsl::String & sValue, bool & bFound)
{
    if (tsl::Result oResult = OpenGoodIni(sFile, oFile); oResult.IsError())
        return oResult;
    // No line of an ini file is longer.
    std::optional<IniPlace> oParts;
    if (sPath.size() <= 2 * IniLine::LENGTH_MAX)
        oParts = FindPlace(oFile, sPath);
    if (!oParts)
        return MakeUsageFailure("'" + sPath + "' is no key. One is given as CHAPTER/KEY.");
    oPlace = *oParts;

    // The failure has a cause if the name is invalid, none if it is only missing.
    tsl::Result oReason;
    bFound = oFile.GetString(oPlace.sChapter, oPlace.sKey, sValue, oReason);
    if (oReason.GetHistorySize() > 0)
        return tsl::MakeResult(tsl::ERR::eBadData, "'" + sPath + "' is no key", oReason.GetHistory(0));
    return tsl::Result();
}

tsl::Result ShowValue(std::string const & sPath, std::string const & sFile, Output & oOutput)
{
    tsl::IniFile oFile;
    IniPlace oPlace;
    tsl::String sValue;
    bool bFound = false;
    if (tsl::Result oResult = FindKey(sPath, sFile, oFile, oPlace, sValue, bFound); oResult.IsError())
        return oResult;
    if (!bFound)
        return MakeFailure(
            "The file '" + sFile + "' has no key '" + sPath + "'." + AskForNearest(sPath, GetPaths(oFile)));
    oOutput.Write(sValue.s_str() + '\n');
    return tsl::Result();
}

/// Writes the new content to a file beside the old one, checks it, and replaces the old one by it.
tsl::Result Replace(std::string const & sFile, std::string const & sContent, IniPlace const & oPlace,
    std::string_view sValue, tsl::IniFile const & oBefore)
{
    std::error_code oError;
    std::filesystem::path const oReal = std::filesystem::canonical(sFile, oError);
    std::filesystem::path oBeside;
    int iError = oError.value();
    if (iError == 0)
        iError = System::WriteBeside(oReal, sContent, oBeside);
    if (iError != 0)
        return MakeFailure("The file '" + sFile + "' cannot be changed", tsl::OS::FormatError(iError));

    tsl::IniFile oAfter;
    if (oAfter.Open(oBeside.string()).IsError() || !DifferOnlyAt(oBefore, oAfter, oPlace, sValue))
    {
        std::filesystem::remove(oBeside, oError);
        return MakeFailure(
            "The file '" + sFile + "' stays as it is: a line of it would have more than 499 bytes.");
    }
    iError = System::ReplaceFile(oReal, oBeside);
    if (iError == 0)
        return tsl::Result();
    std::filesystem::remove(oBeside, oError);
    return MakeFailure("The file '" + sFile + "' cannot be replaced", tsl::OS::FormatError(iError));
}

tsl::Result ChangeValue(std::string const & sSetting, std::string const & sFile)
{
    std::size_t const iEqual = sSetting.find('=');
    std::string const sPath = sSetting.substr(0, iEqual);
    if (iEqual == std::string::npos)
        return MakeUsageFailure("'" + sSetting + "' has no value. It is given as CHAPTER/KEY=VALUE.");
    std::string const sValue = sSetting.substr(iEqual + 1);
    if (GetTrimmed(sValue) != sValue || sValue.find('\n') != std::string::npos)
        return MakeUsageFailure("A value cannot have line ends, nor blanks at its ends.");

    tsl::IniFile oFile;
    IniPlace oPlace;
    tsl::String sFormer;
    bool bFound = false;
    if (tsl::Result oResult = FindKey(sPath, sFile, oFile, oPlace, sFormer, bFound); oResult.IsError())
        return oResult;
    std::string sContent;
    if (tsl::Result oResult = ReadContent(sFile, sContent); oResult.IsError())
        return oResult;
    return Replace(sFile, SetIniValue(sContent, oPlace, sValue), oPlace, sValue, oFile);
}

tsl::Result RunIni(
    std::vector<std::string> const & vArguments, Output & oOutput, ReportFailure const & fReport)
{
    Arguments oArguments;
    if (tsl::Result oResult = oArguments.Read(vArguments, GetOptions()); oResult.IsError())
        return oResult;
    if (oArguments.Has("--help") || oArguments.Has("-h"))
    {
        oOutput.Write(HELP);
        return tsl::Result();
    }

    std::vector<std::string> const & vFiles = oArguments.GetFiles();
    std::vector<std::string> const & vGet = oArguments.GetValues("--get");
    std::vector<std::string> const & vSet = oArguments.GetValues("--set");
    if (vFiles.empty())
        return MakeUsageFailure("A file is missing. 'tessel ini --help' tells more.");
    if (vGet.empty() && vSet.empty())
        return CheckFiles(vFiles, oOutput, fReport);
    if (vGet.size() + vSet.size() > 1 || vFiles.size() > 1)
        return MakeUsageFailure("--get and --set take one key of one file at a time.");
    return vSet.empty() ? ShowValue(vGet.front(), vFiles.front(), oOutput)
                        : ChangeValue(vSet.front(), vFiles.front());
}

} // namespace

Command const INI_COMMAND = {"ini", &RunIni};
