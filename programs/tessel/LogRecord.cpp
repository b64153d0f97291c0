#include "LogRecord.h"

#include <algorithm>
#include <charconv>

namespace
{

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Parses the number at the beginning of the text, and removes it with the separator after it.
bool TakeNumber(std::string_view & sText, std::string_view sSeparator, int & iNumber)
{
    auto const [pEnd, eError] = std::from_chars(sText.data(), sText.data() + sText.size(), iNumber);
    if (eError != std::errc())
        return false;
    std::string_view const sRest = sText.substr(static_cast<std::size_t>(pEnd - sText.data()));
    if (!sRest.starts_with(sSeparator))
        return false;
    sText = sRest.substr(sSeparator.size());
    return true;
}

LogTime GetNumber(std::string_view sDigits)
{
    LogTime iNumber = 0;
    for (char const c : sDigits)
        iNumber = iNumber * 10 + (c - '0');
    return iNumber;
}

/// From "DD.MM.YYYY hh:mm:ss".
LogTime ReadTime(std::string_view s)
{
    LogTime const iDate =
        (GetNumber(s.substr(6, 4)) * 100 + GetNumber(s.substr(3, 2))) * 100 + GetNumber(s.substr(0, 2));
    LogTime const iClock =
        (GetNumber(s.substr(11, 2)) * 100 + GetNumber(s.substr(14, 2))) * 100 + GetNumber(s.substr(17, 2));
    return iDate * 1'000'000 + iClock;
}

bool ReadFailure(std::string_view sLine, LoggedFailure & oFailure)
{
    constexpr std::string_view sNumber = "Number=";
    constexpr std::string_view sText = ",Text=";
    constexpr std::string_view sFile = ",File=";
    constexpr std::string_view sLineNumber = ",Line=";
    if (!sLine.starts_with(sNumber))
        return false;
    sLine.remove_prefix(sNumber.size());
    // From the right, since the text may contain anything.
    std::size_t const iLine = sLine.rfind(sLineNumber);
    std::size_t const iFile = sLine.rfind(sFile, iLine);
    if (iLine == std::string_view::npos || iFile == std::string_view::npos)
        return false;

    std::string_view sHead = sLine.substr(0, iFile);
    std::string_view sTail = sLine.substr(iLine + sLineNumber.size());
    if (!TakeNumber(sHead, sText, oFailure.iNumber) || !TakeNumber(sTail, "", oFailure.iLine)
        || !sTail.empty())
        return false;
    oFailure.sText = sHead;
    oFailure.sFile = sLine.substr(iFile + sFile.size(), iLine - iFile - sFile.size());
    return true;
}

/// Removes what the layout writes after each entry but the last: a quote, and mostly a semicolon and a blank.
std::string_view CutEntryEnd(std::string_view sEntry)
{
    for (std::string_view const sEnd : {"'; ", "'"})
        if (sEntry.ends_with(sEnd))
            return sEntry.substr(0, sEntry.size() - sEnd.size());
    return sEntry;
}

/// The end of the value that begins at iBegin: the first quote that "; name='" follows, or else the last quote.
std::size_t FindValueEnd(std::string_view sText, std::size_t iBegin)
{
    for (std::size_t iEnd = iBegin; (iEnd = sText.find("'; ", iEnd)) != std::string_view::npos; ++iEnd)
    {
        std::size_t const iNameEnd = sText.find_first_of("='\n", iEnd + 3);
        if (iNameEnd != std::string_view::npos && sText.substr(iNameEnd).starts_with("='"))
            return iEnd;
    }
    return sText.size() > iBegin && sText.ends_with('\'') ? sText.size() - 1 : std::string_view::npos;
}

} // namespace

bool BeginsRecord(std::string_view sText)
{
    constexpr std::string_view sForm = "00.00.0000 00:00:00";
    if (sText.size() < sForm.size())
        return false;
    for (std::size_t i = 0; i < sForm.size(); ++i)
        if (sForm[i] == '0' ? !IsDigit(sText[i]) : sText[i] != sForm[i])
            return false;
    return sText.size() == sForm.size() || sText[sForm.size()] == ' ' || sText[sForm.size()] == '\n';
}

char const * GetKindName(RecordKind eKind)
{
    constexpr char const * aNames[] = {"", "ERR", "DEB", "MSG"};
    return aNames[static_cast<std::size_t>(eKind)];
}

std::string GetInternationalTime(std::string_view sTime)
{
    std::string sText(sTime.substr(6, 4));
    sText.append("-").append(sTime.substr(3, 2)).append("-").append(sTime.substr(0, 2));
    return sText.append("T").append(sTime.substr(11));
}

LogRecord::LogRecord(std::string_view sRecord) : sText(sRecord), sBody(sRecord)
{
    if (!BeginsRecord(sRecord))
        return;

    sTime = sRecord.substr(0, LENGTH_OF_HEAD - 1);
    iTime = ReadTime(sTime);
    sBody = sRecord.substr(std::min(sRecord.size(), LENGTH_OF_HEAD));
    if (sBody == "ERR" || sBody.starts_with("ERR ") || sBody.starts_with("ERR\n"))
    {
        eKind = RecordKind::eFailure;
        sBody.remove_prefix(std::min<std::size_t>(sBody.size(), 4));
    }
    else
        eKind = ReadTrace(sBody) ? RecordKind::eTrace : RecordKind::eMessage;
}

bool LogRecord::ReadTrace(std::string_view sRest)
{
    int iReadProcess = 0;
    int iReadThread = 0;
    if (!TakeNumber(sRest, " ", iReadProcess) || !TakeNumber(sRest, " ", iReadThread)
        || !sRest.starts_with("DEB "))
        return false;

    iProcess = iReadProcess;
    iThread = iReadThread;
    sRest.remove_prefix(4);
    sId = sRest.substr(0, sRest.find_first_of(" \n"));
    sBody = sRest.substr(std::min(sRest.size(), sId.size() + 1));
    return true;
}

std::vector<LoggedFailure> GetFailures(LogRecord const & oRecord)
{
    std::string_view sRest = oRecord.sBody;
    constexpr std::string_view sMark = "History ";
    if (sRest.starts_with('\n'))
        sRest.remove_prefix(1);
    int iEntry = 0;
    if (!sRest.starts_with(sMark))
        return {};
    sRest.remove_prefix(sMark.size());
    if (!TakeNumber(sRest, ": ", iEntry))
        return {};

    // The oldest cause is first, and each entry has its number.
    std::vector<LoggedFailure> vFailures;
    for (LoggedFailure oFailure; iEntry >= 0; --iEntry)
    {
        std::string const sNext = "\nHistory " + std::to_string(iEntry - 1) + ": ";
        std::size_t const iEnd = iEntry > 0 ? sRest.find(sNext) : sRest.size();
        if (iEnd == std::string_view::npos)
            return {};
        std::string_view const sEntry = sRest.substr(0, iEnd);
        if (!ReadFailure(iEntry > 0 ? CutEntryEnd(sEntry) : sEntry, oFailure))
            return {};
        vFailures.push_back(oFailure);
        if (iEntry > 0)
            sRest.remove_prefix(iEnd + sNext.size());
    }
    std::reverse(vFailures.begin(), vFailures.end());
    return vFailures;
}

std::vector<std::pair<std::string_view, std::string_view>> GetFields(LogRecord const & oRecord)
{
    std::vector<std::pair<std::string_view, std::string_view>> vFields;
    std::string_view sRest = oRecord.sBody;
    for (;;)
    {
        std::size_t const iNameEnd = sRest.find("='");
        if (iNameEnd == std::string_view::npos)
            return {};
        std::size_t const iEnd = FindValueEnd(sRest, iNameEnd + 2);
        if (iEnd == std::string_view::npos)
            return {};
        vFields.emplace_back(sRest.substr(0, iNameEnd), sRest.substr(iNameEnd + 2, iEnd - iNameEnd - 2));
        if (iEnd + 1 == sRest.size())
            return vFields;
        sRest.remove_prefix(iEnd + 3);
    }
}
