#include "AssertionTest.h"
#include "ProcessTest.h"

#include <csignal>

using namespace tsltest;

namespace
{

/// The program, in a folder of its own.
class TesselRun : public TestProgram
{
public:
    TesselRun() : TestProgram(TESSEL_PROGRAMS "/tessel") {}

    std::string GetPath(std::string const & sName) const { return (GetFolder() / sName).string(); }

    /// What a run prints, its failures included, and then its exit code in brackets unless it is 0. The arguments
    /// are separated by bars.
    std::string GetPrinted(std::string const & sArguments) const
    {
        std::istringstream oArguments(sArguments);
        std::vector<std::string> vArguments;
        for (std::string sArgument; std::getline(oArguments, sArgument, '|');)
            vArguments.push_back(sArgument);
        ProgramOutcome const oOutcome = Run(vArguments);
        std::string const sPrinted = oOutcome.sOutput + oOutcome.sErrors;
        return oOutcome.iExitCode == 0 ? sPrinted
                                       : sPrinted + "(" + std::to_string(oOutcome.iExitCode) + ")\n";
    }
};

/// As a page of the guide shows a run.
std::string Indent(std::string const & sText)
{
    return std::regex_replace("\n" + sText, std::regex("\n(?=[^\n])"), "\n    ").substr(1);
}

std::string const TRACE = "13.11.2001 15:08:14 12 34 DEB Task starts\n";
std::string const ORDER = "13.11.2001 15:08:15 Name='bolt'; Note='it's; = ok'; Count='5'\n";
std::string const FAILURE = "13.11.2001 15:08:16 ERR \n"
                            "History 2: Number=5,Text=not, there,File=c.cpp,Line=7'; \n"
                            "History 1: Number=2,Text=b,File=b.cpp,Line=8'\n"
                            "History 0: Number=1,Text=a\nb,File=a.cpp,Line=9\n";
std::string const LINES = "14.11.2001 00:00:00 12 -35 DEB Pipe first\nsecond \xe4\xc3\xa4\"\x01\n";
std::string const EMPTY = "14.11.2001 09:00:00 \n";
std::string const TORN = "14.11.2001 10:00:00 13 34 DEB Task tor";
std::string const LOG = "rest of a line\n" + TRACE + ORDER + FAILURE + LINES + EMPTY + TORN;

} // namespace

TEST(TesselHelp, IsWhatTheGuideShows)
{
    std::stringstream oPage;
    oPage << std::ifstream(TESSEL_GUIDE "/programs.md").rdbuf();
    std::string const sPage = oPage.str();
    for (std::string const sArguments : {"--help", "log|--help"})
    {
        std::string const sRun = "$ tessel " + std::regex_replace(sArguments, std::regex("\\|"), " ") + '\n'
                                 + TesselRun().GetPrinted(sArguments);
        EXPECT_NE(sPage.find(Indent(sRun)), std::string::npos) << sRun;
    }
}

TEST(TesselUsage, WrongArgumentsAreToldWithAHintAndCode2)
{
    // Arguments, what is printed.
    Rows<char const *, std::string> aRows = {{"", "A command is missing. 'tessel --help' tells more."},
        {"lgo", "There is no command 'lgo'. Did you mean 'log'? 'tessel --help' shows all."},
        {"log|--folow", "There is no option '--folow'. Did you mean '--follow'? A file of that name is given "
                        "behind '--'."},
        {"log|-x", "There is no option '-x'. A file of that name is given behind '--'."},
        {"log|--json=1", "The option '--json' takes no value."},
        {"log|--id|--json",
            "The option '--id' needs a value. One that begins with '--' is given as --id=VALUE."},
        {"log|--since|31.13.2001",
            "'31.13.2001' is no time. Times are such as '13.11.2026 15:08:14', 2026-11-13, 15:08 or 10m."},
        {"log|--kind|eRr", "There is no kind 'eRr', only ERR, DEB and MSG. Did you mean 'ERR'?"},
        {"log|--pid|1x", "'1x' is no number."},
        {"log|--field|x", "'x' is no field. One is given as NAME=VALUE."},
        {"log|--stats|--follow", "The options '--follow' and '--stats' cannot be used together."}};
    TesselRun const oTessel;
    for (auto const & [sArguments, sPrinted] : aRows)
        EXPECT_EQ(oTessel.GetPrinted(sArguments), "tessel: " + sPrinted + "\n(2)\n");
    EXPECT_TRUE(oTessel.GetPrinted("log|--grep|(").ends_with("\n(2)\n"));
}

TEST(TesselLog, ShowsTheSelectedRecordsWhole)
{
    std::string const sAll = LOG + "\n";
    std::string const sTorn = TORN + "\n";
    // Arguments, what is printed of the log.
    Rows<char const *, std::string> aRows = {{"", sAll}, {"|--kind|ERR", FAILURE},
        {"|--kind=DEB|--kind|MSG", TRACE + ORDER + LINES + EMPTY + sTorn}, {"|--id|Task", TRACE + sTorn},
        {"|--id|Task|--id|Pipe|--pid|12", TRACE + LINES}, {"|--tid|-35", LINES},
        {"|--since|13.11.2001 15:08:15|--until|13.11.2001", ORDER + FAILURE},
        {"|--since|2001-11-14T00:00|--until|14.11.2001 09:00", LINES + EMPTY},
        {"|--until|2001-11-13 15:08", TRACE + ORDER + FAILURE}, {"|--since|0s", ""},
        {"|--grep|o|--grep=t$", LINES}, {"|--grep|rest", "rest of a line\n"},
        {"|--field|Note=it's; = ok|--field|Count=5", ORDER}, {"|--field|Count=6", ""},
        {"|--field|Text=not, there|--field|Number=5", FAILURE},
        {"|--field|Text=a\nb|--field|Line=9", FAILURE}, {"|--field|Text=not, there|--field|Number=2", ""},
        {"|--count", "7\n"}, {"|--count|--kind|DEB", "3\n"},
        {"|--stats|--json", "{\"records\":7,\"from\":\"2001-11-13T15:08:14\",\"to\":\"2001-11-14T10:00:00\","
                            "\"kinds\":{\"ERR\":1,\"DEB\":3,\"MSG\":2,\"without time\":1},"
                            "\"ids\":{\"Task\":2,\"Pipe\":1},\"places\":{\"a.cpp:9\":1}}\n"}};
    TesselRun const oTessel;
    oTessel.WriteFile("Logfile.txt", LOG);
    for (auto const & [sArguments, sPrinted] : aRows)
        EXPECT_EQ(oTessel.GetPrinted(std::string("log") + sArguments), sPrinted) << sArguments;
    EXPECT_EQ(oTessel.GetPrinted("log|no|Logfile.txt"),
        sAll + "tessel: The file 'no' cannot be opened: No such file or directory\n(1)\n");
}

TEST(TesselLog, WritesEachRecordAsALineOfJson)
{
    TesselRun const oTessel;
    oTessel.WriteFile("Logfile.txt", LOG);
    EXPECT_EQ(oTessel.GetPrinted("log|--json"),
        R"({"text":"rest of a line"}
{"time":"2001-11-13T15:08:14","kind":"DEB","pid":12,"tid":34,"id":"Task","text":"starts"}
{"time":"2001-11-13T15:08:15","kind":"MSG","fields":{"Name":"bolt","Note":"it's; = ok","Count":"5"},)"
        R"("text":"Name='bolt'; Note='it's; = ok'; Count='5'"}
{"time":"2001-11-13T15:08:16","kind":"ERR","failures":[{"number":1,"text":"a\nb","file":"a.cpp","line":9},)"
        R"({"number":2,"text":"b","file":"b.cpp","line":8},)"
        R"({"number":5,"text":"not, there","file":"c.cpp","line":7}],)"
        R"("text":"\nHistory 2: Number=5,Text=not, there,File=c.cpp,Line=7'; \n)"
        R"(History 1: Number=2,Text=b,File=b.cpp,Line=8'\n)"
        R"(History 0: Number=1,Text=a\nb,File=a.cpp,Line=9"}
{"time":"2001-11-14T00:00:00","kind":"DEB","pid":12,"tid":-35,"id":"Pipe","text":"first\nsecond \u00e4ä\"\u0001"}
{"time":"2001-11-14T09:00:00","kind":"MSG","text":""}
{"time":"2001-11-14T10:00:00","kind":"DEB","pid":13,"tid":34,"id":"Task","text":"tor"}
)");
}

TEST(TesselLog, LosesNothingWhereverItsBuffersEnd)
{
    // More than the program holds of a record, and line ends and halves of times at all places.
    std::mt19937 oRandom(14);
    std::string const sHead = "13.11.2001 15:08:14 1 2 DEB A ";
    std::string sLog;
    std::size_t iRecords = 0;
    for (std::size_t const iSize : {100U, 300'000U, 9'000'000U, 5'000U, 8'400'000U})
        for (std::size_t iLeft = std::max<std::size_t>(iSize, 1'000'000); iLeft > 0; ++iRecords)
        {
            sLog += sHead;
            std::size_t const iLength = std::min(iLeft, iSize / 2 + oRandom() % iSize);
            for (std::size_t i = 0; i < iLength;)
            {
                std::size_t const iPart = std::min<std::size_t>(1 + oRandom() % 300, iLength - i);
                sLog += (oRandom() % 2 ? sHead.substr(0, 18) : std::string(iPart, 'x')) + '\n';
                i += iPart;
            }
            iLeft -= iLength;
        }
    TesselRun const oTessel;
    oTessel.WriteFile("Logfile.txt", sLog);
    ProgramOutcome const oShown = oTessel.Run({"log"});
    EXPECT_TRUE(oShown.sOutput == sLog) << oShown.sOutput.size() << " bytes of " << sLog.size();
    EXPECT_EQ(oTessel.GetPrinted("log|--count"), std::to_string(iRecords) + "\n");
}

TEST(TesselLog, FollowsALogThatIsReplaced)
{
    TesselRun const oTessel;
    oTessel.WriteFile("x.log", TRACE + TORN);
    tsl::CmdLine oFollow;
    oFollow.SetApplication(TESSEL_PROGRAMS "/tessel");
    for (std::string const & sArgument :
        {std::string("log"), std::string("--follow"), oTessel.GetPath("x.log")})
        oFollow.AddArg(sArgument);
    oFollow.SetMode(tsl::CmdLine::eModeRedirect | tsl::CmdLine::eModeReaderThreads);
    int iProcessId = 0;
    ASSERT_TRUE(oFollow.Run(iProcessId).IsOk());

    std::string sShown;
    auto const Shows = [&](std::string const & sExpected)
    {
        return WaitUntil(
                   [&]
                   {
                       while (std::unique_ptr<tsl::String> const pLine{oFollow.ReceiveStdOut()})
                           sShown += pLine->s_str() + '\n';
                       return sShown.size() >= sExpected.size();
                   })
               && sShown == sExpected;
    };
    auto const Append = [&](std::string const & sText)
    { std::ofstream(oTessel.GetPath("x.log"), std::ios::app) << sText; };

    std::string sExpected = TRACE;
    EXPECT_TRUE(Shows(sExpected)) << sShown;
    Append("n\n");
    EXPECT_TRUE(Shows(sExpected += TORN + "n\n")) << sShown;
    // A torn line is shown when no end of it can come any more.
    Append(TORN);
    std::filesystem::rename(oTessel.GetPath("x.log"), oTessel.GetPath("y.log"));
    Append(ORDER);
    EXPECT_TRUE(Shows(sExpected += TORN + "\n" + ORDER)) << sShown;
    // Overwritten: shorter, then longer than before.
    oTessel.WriteFile("x.log", TRACE);
    EXPECT_TRUE(Shows(sExpected += TRACE)) << sShown;
    oTessel.WriteFile("x.log", ORDER + ORDER);
    EXPECT_TRUE(Shows(sExpected += ORDER + ORDER)) << sShown;
    EXPECT_TRUE(oFollow.Kill(0).IsOk());
}
