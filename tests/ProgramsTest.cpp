#include "TestChild.h"
#include "TestPrelude.h"

#include "../programs/tessel/IniChecker.h"

#include <csignal>
#include <regex>

using namespace tsltest;

namespace
{

class TesselRun : public TestProgram
{
public:
    TesselRun() : TestProgram(TESSEL_PROGRAMS "/tessel") {}

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
    for (std::string const sCommand :
        {"tessel --help", "tessel log --help", "tessel ini --help", "jobrunner --help"})
    {
        std::istringstream oWords(sCommand);
        std::vector<std::string> vWords{std::istream_iterator<std::string>(oWords), {}};
        TestProgram const oProgram(TESSEL_PROGRAMS "/" + vWords.front());
        vWords.erase(vWords.begin());
        std::string const sRun = "$ " + sCommand + '\n' + oProgram.Run(vWords).sOutput;
        EXPECT_NE(sPage.find(Indent(sRun)), std::string::npos) << sRun;
    }
}

TEST(TesselUsage, WrongArgumentsAreToldWithAHintAndCode2)
{
    Rows<char const *, std::string> aRows = {
        {"", "A command is missing, log or ini. 'tessel --help' tells more."},
        {"lgo", "There is no command 'lgo'. Did you mean 'log'? 'tessel --help' shows all."},
        {"log|--folow", "There is no option '--folow'. Did you mean '--follow'? A file of that name is given "
                        "behind '--'."},
        {"log|--json=1", "The option '--json' takes no value."},
        {"log|--id", "The option '--id' needs a value. One that begins with '--' is given as --id=VALUE."},
        {"log|--since|31.13.2001",
            "'31.13.2001' is no time. Times are such as '13.11.2026 15:08:14', 2026-11-13, 15:08 or 10m."},
        {"log|--kind|eRr", "There is no kind 'eRr', only ERR, DEB and MSG. Did you mean 'ERR'?"},
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
    for (std::size_t const iSize : {100U, 9'000'000U, 300'000U, 5'000U, 8'400'000U})
        for (std::size_t const iEnd = sLog.size() + std::max<std::size_t>(iSize, 1'000'000);
             sLog.size() < iEnd; ++iRecords)
        {
            std::size_t const iRecordEnd = sLog.size() + iSize / 2 + oRandom() % iSize;
            sLog += sHead;
            while (sLog.size() < iRecordEnd)
                sLog += (oRandom() % 2 ? sHead.substr(0, 18) : std::string(1 + oRandom() % 300, 'x')) + '\n';
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
    Child oFollow("", WITH_READERS);
    oFollow.SetCommand("\"" TESSEL_PROGRAMS "/tessel\" log --follow \"" + oTessel.GetPath("x.log") + '"');
    ASSERT_TRUE(oFollow.Start().IsOk());

    std::string sShown;
    auto const Shows = [&](std::string const & sExpected)
    {
        auto const fRead = [&]
        {
            sShown += oFollow.TakeOutput().s_str();
            return sShown.size() >= sExpected.size();
        };
        return WaitUntil(fRead) && sShown == sExpected;
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
    oTessel.WriteFile("x.log", TRACE);
    EXPECT_TRUE(Shows(sExpected += TRACE)) << sShown;
}

TEST(TesselIni, SaysWhatIsWrongWithEachLineAndWhatToDo)
{
    std::string const sName =
        "Syntax error: Name of key invalid. The name may only contain alphanumeric characters.\n    ";
    // Content, what is printed behind the name of the file, without the last line about all files.
    Rows<std::string, std::string> aRows = {{"; x\n[A]\nx=1\n+=2\n", ""},
        {"\xef\xbb\xbf[A]\nx=1\n[A]\ny\n", "1: Syntax error: Chaptername expected.\n    The file begins with "
                                           "a byte order mark. Save it without one.\n"
                                           "3: Syntax error: Chapter 'A' already exists.\n    It begins in "
                                           "line 1; its keys have to stand there.\n"
                                           "4: Syntax error: Token '=' expected.\n    A key without a value "
                                           "is written with '=' at its end.\n"},
        {"x=1\ny=2\n[a \"b\"]\nz=1\n",
            "1: Syntax error: Chaptername expected.\n    A line such as [Main] has to come first.\n"
            "3: Syntax error: Name of chapter invalid. The name may only contain alphanumeric characters.\n"
            "    A name has letters of ASCII, digits, '/' and '_' only; 'a_b' would be one.\n"},
        {"[A]\n# x=1\n=2\n+=\nx=1\nx=2\n  y\nz: 1\n[\n",
            "2: " + sName + "Comments begin with ';'.\n"
                + "3: Syntax error: Name of key invalid. The name must contain at least 1 character.\n"
                  "    A name has to stand in front of '='.\n"
                  "4: "
                + sName
                + "Behind '+=' a text is missing, with which the value goes on.\n"
                  "6: Syntax error: Key 'x' already exists in this Chapter.\n    It is in line 5, too. A "
                  "list is one value, which goes on in "
                  "lines that begin with '+='.\n"
                  "7: Syntax error: Token '=' expected.\n    A value goes on in a line that begins with "
                  "'+='.\n"
                  "8: Syntax error: Token '=' expected.\n    A value stands behind '=', not behind ':'.\n"
                  "9: Syntax error: Token ']' expected.\n    A chapter is written [Name].\n"},
        {"[A] x\n+= 1\na=1 ; b\nc=\"d\"\ne=007\nf=" + std::string(497, 'x') + "\ng\n",
            "1: Note: What stands behind ']' does not count.\n"
            "2: Note: There is no key that the line continues.\n    Its text cannot be read by any program.\n"
            "3: Note: ';' and what follows is part of the value.\n"
            "    A comment is a line of its own that begins with ';'.\n"
            "4: Note: The quotes are part of the value.\n    Values need none; blanks at their ends do not "
            "count.\n"
            "5: Note: '007' is a text, but no number.\n    A number is written without '+' and leading "
            "zeros: 7\n"
            "8 (line 7 of the file): Syntax error: Token '=' expected.\n    A key without a value is written "
            "with '=' at its end.\n"},
        {"[Debug]\nEnable=yes\n[Debug/Switch]\ntask=1\nTaskContxt=1\nGreeter=1\n[N]\nx=1 \\\n",
            "2: Note: 'yes' is no number, so it counts as 0.\n    1 switches on.\n"
            "4: Note: The library has no log point 'task'.\n    Did you mean 'Task'?\n"
            "5: Note: The library has no log point 'TaskContxt'.\n    Did you mean 'TaskContext'?\n"
            "8: Note: The '\\' at the end is part of the value.\n"
            "    A value goes on in a line that begins with '+='.\n"}};
    TesselRun const oTessel;
    for (auto const & [sIni, sPrinted] : aRows)
    {
        oTessel.WriteFile("x", sIni);
        bool const bError = sPrinted.find("error") != std::string::npos;
        EXPECT_EQ(std::regex_replace(oTessel.GetPrinted("ini|x"), std::regex("(^|\n)x:"), "$1"),
            sPrinted + (bError ? "tessel: 1 of 1 files cannot be used.\n(1)\n" : ""))
            << sIni;
    }
    EXPECT_EQ(oTessel.GetPrinted("ini|no"),
        "tessel: The file 'no' cannot be read: No such file or directory\n(1)\n");
}

/// The line and text of the first error of a file, as the library has it; empty if there is none.
static std::string OpenWithLibrary(std::string const & sFile)
{
    tsl::IniFile oIni;
    tsl::Result const oResult = oIni.Open(sFile);
    if (oResult.IsOk())
        return "";
    std::string const sText = oResult.GetText().s_str();
    std::string sError = sText.substr(sText.rfind(' ') + 1);
    for (int i = 0; i < oResult.GetHistorySize(); ++i)
        sError += ' ' + std::string(GetTrimmed(oResult.GetHistory(i).GetText().s_str()));
    return sError;
}

static std::string OpenWithProgram(std::string const & sContent)
{
    std::string sError;
    IniChecker oChecker(
        [&](IniLine const & oLine, IniFinding const & oFinding)
        {
            if (sError.empty() && oFinding.eWeight == IniFinding::Weight::eError)
                sError = std::to_string(oLine.iNumber) + ". " + std::string(GetTrimmed(oFinding.sText));
        });
    IniLineCutter oCutter(sContent);
    for (IniLine oLine; oCutter.Next(oLine);)
        oChecker.Check(oLine);
    return sError;
}

TEST(TesselIni, AgreesWithTheLibraryOnRandomFiles)
{
    // More with --gtest_repeat, which goes on with other files.
    static std::mt19937 oRandom(14);
    std::string const aParts[] = {"\n", "\n", "\n", "[A]\n", "[B/c]\n", "[Debug/Switch]\n", "\nx=1\n",
        "\ny = 2\n", "+=z\n", "; c\n", "[", "]", "=", "+=", "+", ";", "#", " ", "\t", "\r\n", "\v",
        std::string(1, '\0'), "A", "x", "y", "x_1", "a-b", "\xe4", "Task=1", "\"", "\xef\xbb\xbf",
        std::string(470, 'l'), std::string(499, 'm')};
    tsl::TestFolder const oFolder;
    std::size_t iGood = 0, iWrong = 0;
    for (int i = 0; i < 2000; ++i)
    {
        std::string sContent = oRandom() % 4 ? "[A]\n" : "";
        for (auto iParts = oRandom() % 30; iParts > 0; --iParts)
            sContent += aParts[oRandom() % std::size(aParts)];
        oFolder.WriteFile("x", sContent);
        std::string const sExpected = OpenWithLibrary(oFolder.GetPath("x"));
        ASSERT_EQ(OpenWithProgram(sContent), sExpected) << testing::PrintToString(sContent);
        ++(sExpected.empty() ? iGood : iWrong);
    }
    EXPECT_GT(iGood, 100u);
    EXPECT_GT(iWrong, 100u);
}

TEST(TesselIni, ChangesOneValueAndNothingElse)
{
    std::string const sIni =
        "; head\r\n[A]\r\n x = 1 \r\n; c\r\n+= more\r\n+= yet\r\ny=2\r\n\r\n; B\r\n[A/B]\r\nx=3";
    std::string const sLong(600, 'x');
    // Setting, the text of sIni that is replaced and by what, what is printed.
    Rows<std::string, std::string, std::string, std::string> aRows = {
        {"A/x=new = value", " x = 1 \r\n; c\r\n+= more\r\n+= yet\r\n", " x = new = value\r\n; c\r\n", ""},
        {"A/y=", "y=2", "y=", ""}, {"A/z=9", "y=2\r\n", "y=2\r\nz=9\r\n", ""}, {"A/B/x=4", "x=3", "x=4", ""},
        {"A/B/y=4", "x=3", "x=3\r\ny=4\r\n", ""}, {"N/k=v", "x=3", "x=3\r\n\r\n[N]\r\nk=v\r\n", ""},
        {"A/b-c=1", "", "", "'A/b-c' is no key: The name may only contain alphanumeric characters.\n(2)\n"},
        {"x=1", "", "", "'x' is no key. One is given as CHAPTER/KEY.\n(2)\n"},
        {"A/q=" + sLong, "", "",
            "The file 'link' stays as it is: a line of it would have more than 499 bytes.\n(1)\n"}};
    for (auto const & [sSetting, sOld, sNew, sPrinted] : aRows)
    {
        TesselRun const oTessel;
        oTessel.WriteFile("x", sIni);
        auto const eMode = std::filesystem::perms::owner_read | std::filesystem::perms::owner_write
                           | std::filesystem::perms::others_read;
        std::filesystem::permissions(oTessel.GetPath("x"), eMode);
        std::filesystem::create_symlink("x", oTessel.GetPath("link"));

        EXPECT_EQ(
            oTessel.GetPrinted("ini|link|--set|" + sSetting), sPrinted.empty() ? "" : "tessel: " + sPrinted);
        std::string sExpected = sIni;
        EXPECT_EQ(oTessel.ReadFile("x"), sExpected.replace(sExpected.find(sOld), sOld.size(), sNew))
            << sSetting;
        EXPECT_EQ(std::filesystem::status(oTessel.GetPath("x")).permissions(), eMode);
        EXPECT_TRUE(std::filesystem::is_symlink(oTessel.GetPath("link")));
        // These two and the log of the program: nothing is left behind.
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(oTessel.GetPath()), {}), 3) << sSetting;
    }
}

TEST(TesselIni, ShowsAValue)
{
    TesselRun const oTessel;
    oTessel.WriteFile("x", "[A]\nx=1\n+=2\n[A/B]\nC=3\n");
    EXPECT_EQ(oTessel.GetPrinted("ini|--get|A/x|x"), "1 2\n");
    EXPECT_EQ(oTessel.GetPrinted("ini|--get=A/B/C|x"), "3\n");
    EXPECT_EQ(oTessel.GetPrinted("ini|--get|A/B/c|x"),
        "tessel: The file 'x' has no key 'A/B/c'. Did you mean 'A/B/C'?\n(1)\n");
}
