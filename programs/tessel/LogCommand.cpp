#include "../shared/NearestName.h"
#include "Arguments.h"
#include "Command.h"
#include "LogFollower.h"
#include "LogReader.h"
#include "LogTimes.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <stdexcept>

namespace
{

constexpr char HELP[] =
    R"(tessel log shows the records of log files: whole, each failure with its history, as they are in the file.

  tessel log [OPTION...] [FILE...]

Without a FILE it reads Logfile.txt; '-' is the standard input.

Which records:
  --since TIME        not before this time, by the clock of the log: '13.11.2026', '13.11.2026 15:08',
                      2026-11-13T15:08:14, 15:08 of today; or so long ago: 90s, 10m, 2h, 3d
  --until TIME        not after it
  --kind KIND         ERR (failures), DEB (traces) or MSG (other messages)
  --id NAME           traces with this identifier
  --pid N, --tid N    traces of this process, of this thread
  --grep PATTERN      those with a match of the regular expression; ^ and $ match at each line
  --field NAME=VALUE  messages with this value; failures with this Number, Text, File or Line
Of several --kind, --id, --pid or --tid one has to hold, of several --grep or --field each.

What is shown:
  --follow            then what is appended, too, until the program is ended; a file that takes the place of
                      the old one is read from its beginning. '--since 0s' leaves out what is there already
  --json              each record as a line of JSON; bytes that are no UTF-8 are taken for Latin-1
  --count             how many records there are
  --stats             how many of each kind, identifier and place; as JSON with --json
  --help              this text

Of a record of more than 8 MiB the filters see the first 8 MiB; it is shown whole.
A value may also follow behind '=', and one that begins with '--' has to: --grep=--x. Behind the word '--'
all words are files. Colours are for terminals only, and not used if NO_COLOR is set.
)";

std::vector<Option> const & GetOptions()
{
    static std::vector<Option> const vOptions = {{"--help", Option::Takes::eNothing},
        {"-h", Option::Takes::eNothing}, {"--since", Option::Takes::eValue},
        {"--until", Option::Takes::eValue}, {"--kind", Option::Takes::eValue},
        {"--id", Option::Takes::eValue}, {"--pid", Option::Takes::eValue}, {"--tid", Option::Takes::eValue},
        {"--grep", Option::Takes::eValue}, {"--field", Option::Takes::eValue},
        {"--follow", Option::Takes::eNothing}, {"--json", Option::Takes::eNothing},
        {"--count", Option::Takes::eNothing}, {"--stats", Option::Takes::eNothing}};
    return vOptions;
}

/// Parses the options that select records. Each function adds to the filter, or fails with code 2.
class FilterReader
{
public:
    explicit FilterReader(LogFilter & oFilter) : m_oFilter(oFilter) {}

    tsl::Result Read(Arguments const & oArguments)
    {
        using Reader = tsl::Result (FilterReader::*)(std::string const &);
        static constexpr std::pair<char const *, Reader> aReaders[] = {{"--since", &FilterReader::ReadSince},
            {"--until", &FilterReader::ReadUntil}, {"--kind", &FilterReader::ReadKind},
            {"--id", &FilterReader::ReadId}, {"--pid", &FilterReader::ReadProcess},
            {"--tid", &FilterReader::ReadThread}, {"--grep", &FilterReader::ReadPattern},
            {"--field", &FilterReader::ReadField}};
        for (auto const & [sOption, fReader] : aReaders)
            for (std::string const & sValue : oArguments.GetValues(sOption))
                if (tsl::Result oResult = (this->*fReader)(sValue); oResult.IsError())
                    return oResult;
        return tsl::Result();
    }

private:
    tsl::Result ReadSince(std::string const & sValue)
    {
        return ReadTime(sValue, TimeEdge::eBegin, m_oFilter.iSince);
    }

    tsl::Result ReadUntil(std::string const & sValue)
    {
        return ReadTime(sValue, TimeEdge::eEnd, m_oFilter.iUntil);
    }

    static tsl::Result ReadTime(std::string const & sValue, TimeEdge eEdge, LogTime & iTime)
    {
        if (ReadLogTime(sValue, std::time(nullptr), eEdge, iTime))
            return tsl::Result();
        return MakeUsageFailure(
            "'" + sValue
            + "' is no time. Times are such as '13.11.2026 15:08:14', 2026-11-13, 15:08 or 10m.");
    }

    tsl::Result ReadKind(std::string const & sValue)
    {
        std::vector<std::string> vNames;
        for (RecordKind const eKind : {RecordKind::eFailure, RecordKind::eTrace, RecordKind::eMessage})
        {
            vNames.emplace_back(GetKindName(eKind));
            if (sValue == vNames.back())
            {
                m_oFilter.vKinds.push_back(eKind);
                return tsl::Result();
            }
        }
        return MakeUsageFailure(
            "There is no kind '" + sValue + "', only ERR, DEB and MSG." + AskForNearest(sValue, vNames));
    }

    tsl::Result ReadId(std::string const & sValue)
    {
        m_oFilter.vIds.push_back(sValue);
        return tsl::Result();
    }

    tsl::Result ReadProcess(std::string const & sValue) { return ReadNumber(sValue, m_oFilter.vProcesses); }
    tsl::Result ReadThread(std::string const & sValue) { return ReadNumber(sValue, m_oFilter.vThreads); }

    static tsl::Result ReadNumber(std::string const & sValue, std::vector<int> & vNumbers)
    {
        int iNumber = 0;
        auto const [pEnd, eError] = std::from_chars(sValue.data(), sValue.data() + sValue.size(), iNumber);
        if (eError != std::errc() || pEnd != sValue.data() + sValue.size())
            return MakeUsageFailure("'" + sValue + "' is no number.");
        vNumbers.push_back(iNumber);
        return tsl::Result();
    }

    tsl::Result ReadPattern(std::string const & sValue)
    {
        try
        {
            m_oFilter.vPatterns.push_back(
                std::make_unique<tsl::PatternMatcher>(sValue.c_str(), tsl::PatternMatcher::eLineAnchors));
            return tsl::Result();
        }
        catch (std::invalid_argument const & oReason)
        {
            return MakeUsageFailure(oReason.what());
        }
    }

    tsl::Result ReadField(std::string const & sValue)
    {
        std::size_t const iEqual = sValue.find('=');
        if (iEqual == std::string::npos)
            return MakeUsageFailure("'" + sValue + "' is no field. One is given as NAME=VALUE.");
        m_oFilter.vFields.emplace_back(sValue.substr(0, iEqual), sValue.substr(iEqual + 1));
        return tsl::Result();
    }

    LogFilter & m_oFilter;
};

/// Fails for options that cannot be used together.
tsl::Result CheckTogether(Arguments const & oArguments)
{
    constexpr std::pair<char const *, char const *> aPairs[] = {
        {"--count", "--stats"}, {"--follow", "--count"}, {"--follow", "--stats"}};
    for (auto const & [sOne, sOther] : aPairs)
        if (oArguments.Has(sOne) && oArguments.Has(sOther))
            return MakeUsageFailure(
                std::string("The options '") + sOne + "' and '" + sOther + "' cannot be used together.");
    return tsl::Result();
}

std::unique_ptr<RecordSink> MakeSink(Arguments const & oArguments, Output & oOutput)
{
    bool const bJson = oArguments.Has("--json");
    if (oArguments.Has("--count"))
        return MakeCountSink(oOutput);
    if (oArguments.Has("--stats"))
        return MakeStatisticsSink(oOutput, bJson ? Form::eJson : Form::eText);
    if (bJson)
        return MakeJsonSink(oOutput);

    char const * const sNoColour = std::getenv("NO_COLOR");
    return MakeTextSink(oOutput, System::IsOutputTerminal() && (!sNoColour || *sNoColour == '\0'));
}

tsl::Result ReadToEnd(LogReader & oReader, Output & oOutput)
{
    tsl::Result oResult = oReader.Open();
    for (bool bEnd = false; !bEnd && oResult.IsOk() && !oOutput.IsFailed();)
    {
        oResult = oReader.Read(bEnd);
        // A pipe may be written slowly, so show each record at once.
        if (oReader.IsStandardInput())
            oOutput.Flush();
    }
    oReader.EndRecord();
    return oResult;
}

tsl::Result RunLog(
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
    if (tsl::Result oResult = CheckTogether(oArguments); oResult.IsError())
        return oResult;
    LogFilter oFilter;
    if (tsl::Result oResult = FilterReader(oFilter).Read(oArguments); oResult.IsError())
        return oResult;

    std::unique_ptr<RecordSink> const pSink = MakeSink(oArguments, oOutput);
    std::vector<std::string> vFiles = oArguments.GetFiles();
    if (vFiles.empty())
        vFiles.emplace_back("Logfile.txt");
    std::vector<std::unique_ptr<LogReader>> vReaders;
    for (std::string const & sFile : vFiles)
        vReaders.push_back(std::make_unique<LogReader>(sFile, oFilter, *pSink));

    if (oArguments.Has("--follow"))
        return FollowLogs(vReaders, oOutput, fReport);
    for (auto const & pReader : vReaders)
        if (tsl::Result const oResult = ReadToEnd(*pReader, oOutput); oResult.IsError())
            fReport(oResult);
    pSink->Finish();
    return tsl::Result();
}

} // namespace

Command const LOG_COMMAND = {"log", &RunLog};
