#include "TestPrelude.h"

#include <ctime>
#include <regex>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace tsl;
using namespace tsltest;

namespace
{

/// What the C library makes of the time in the zone that TZ names at the moment, as the log writes it.
std::string GetWallClock(time_t iTime)
{
    tm oLocal = {};
    ::localtime_r(&iTime, &oLocal);
    char sText[32];
    ::strftime(sText, sizeof sText, "%d.%m.%Y %H:%M:%S ", &oLocal);
    return sText;
}

} // namespace

TEST(LogFile, ShowsEachKindOfMessage)
{
    auto const Line = [](std::string const & sNumber)
    { return "Number=" + sNumber + ",Text=t,File=f.cpp,Line=1"; };
    Rows<std::string, std::string> aRows = {
        {"debug:two\nlines", "T P DEB Id two\nlines\n"},
        {"result:5:6:7:8", "T ERR \nHistory 3: " + Line("5") + "'; \nHistory 2: " + Line("6")
                               + "'\nHistory 1: " + Line("7") + "'\nHistory 0: " + Line("8") + "\n"},
        {"long:1000000", "T P DEB Id " + std::string(1'000'000, 'y') + "\n"},
        {"element", "T Result='\nHistory 1: Number=2,Text=b,File=,Line=0'\nHistory 0: "
                    "Number=1,Text=a,File=,Line=0'\n"},
    };
    for (auto const & [sCommand, sLog] : aRows)
    {
        TestProgram const oProgram("Reporter");
        EXPECT_EQ(oProgram.Run({sCommand}).iExitCode, 0) << sCommand;
        EXPECT_EQ(oProgram.ReadLog(), sLog) << sCommand;
    }
}

TEST(LogFile, IsExtendedByWholeLinesWhereItWasOpened)
{
    TestProgram const oProgram("Reporter");
    oProgram.WriteFile("Logfile.txt", "half");
    oProgram.Run({"debug:a", "cd:..", "debug:b"});
    EXPECT_EQ(oProgram.ReadLog(), "half\nT P DEB Id a\nT P DEB Id b\n");
}

TEST(LogFile, HasWholeLinesFromManyThreadsAndProcesses)
{
    TestProgram const oProgram("Reporter");
    RunOnThreads(3, [&](int) { EXPECT_EQ(oProgram.Run({"lines:100"}).iExitCode, 0); });
    std::istringstream oLog(oProgram.ReadLog());
    int iLines = 0;
    for (std::string sLine; std::getline(oLog, sLine); ++iLines)
        ASSERT_TRUE(std::regex_match(sLine, std::regex("T P DEB Id x+<end>"))) << sLine;
    EXPECT_EQ(iLines, 3 * 4 * 100);
}

TEST(LogFile, DoesWithoutAFileThatCannotBeOpened)
{
    TestProgram const oProgram("Reporter");
    EXPECT_EQ(oProgram.Run({"limit:4", "debug:a", "debug:b"}).iExitCode, 0) << "no signal ends it";
    EXPECT_TRUE(oProgram.ReadFile("Logfile.txt").ends_with('\n')) << "nobody can go on with half a line";

    std::string const sLog = oProgram.GetPath() / "Logfile.txt";
    std::filesystem::remove(sLog);
    std::filesystem::create_symlink("/dev/full", sLog);
    EXPECT_EQ(oProgram.Run({"debug:a", "result:1"}).iExitCode, 0);
    std::filesystem::remove(sLog);
    ASSERT_EQ(::mkfifo(sLog.c_str(), 0600), 0);
    EXPECT_EQ(oProgram.Run({"open"}).sOutput,
        "1 Error while opening file\n    Logfile.txt: No such device or address\n")
        << "nobody waits for a reader";

    int const iReader = ::open(sLog.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    EXPECT_EQ(oProgram.Run({"debug:through the pipe"}).iExitCode, 0);
    char aText[256] = "";
    EXPECT_GT(::read(iReader, aText, sizeof aText - 1), 0);
    ::close(iReader);
    EXPECT_TRUE(std::string(aText).ends_with(" DEB Id through the pipe\n")) << aText;
}

TEST(LogFile, IsOpenedOnceByEachProcessorForTheProgramAlone)
{
    std::unique_ptr<MessageProcessor> const pLog(
        MessageProcessorFactory::Instance().CreateProcessor("LogFileProcessor"));
    EXPECT_TRUE(pLog->Open().IsOk());
    EXPECT_TRUE(pLog->Open().IsOk());
    EXPECT_TRUE(Asserts("false", "Unknown", [&] { (void)pLog->SetConfig(MessageDispatcherConfig()); }));
    EXPECT_TRUE(Asserts("false", "Unknown", [&] { delete pLog->GetConfig().GetCopy(); }));

    int iFound = 0;
    for (auto const & oEntry : std::filesystem::directory_iterator("/proc/self/fd"))
    {
        std::error_code oGone; // the folder's own descriptor is listed as well
        if (!std::filesystem::read_symlink(oEntry.path(), oGone).string().ends_with("/Logfile.txt"))
            continue;
        ++iFound;
        EXPECT_EQ(::fcntl(std::stoi(oEntry.path().filename().string()), F_GETFD), FD_CLOEXEC);
    }
    EXPECT_EQ(iFound, 2) << "that of the bus and the second one";
}

TEST(LogFile, FollowsTheWallClockInEveryZone)
{
    // Whole hours and parts, the largest distances, summer in January, a negative summer time, and none at all.
    TestProgram oProgram("Reporter");
    for (std::string const sZone : {"America/St_Johns", "Pacific/Kiritimati", "Pacific/Niue",
             "Pacific/Chatham", "Europe/Dublin", "America/New_York", "no such zone"})
    {
        oProgram.SetEnvironment("TZ", sZone);
        oProgram.WriteFile("Logfile.txt", "");
        time_t const iBefore = ::time(nullptr);
        ASSERT_EQ(oProgram.Run({"debug:a"}).iExitCode, 0) << sZone;
        time_t const iAfter = ::time(nullptr);

        ::setenv("TZ", sZone.c_str(), 1);
        ::tzset();
        std::string const sLog = oProgram.ReadFile("Logfile.txt");
        bool bFound = false;
        for (time_t iTime = iBefore; iTime <= iAfter; ++iTime)
            bFound = bFound || sLog.starts_with(GetWallClock(iTime));
        ::unsetenv("TZ");
        ::tzset();
        EXPECT_TRUE(bFound) << sZone << ": " << sLog;
    }
}

TEST(Assertions, ReportOnceAndAreThrownAlsoWhereReportingFails)
{
    TestProgram const oProgram("Reporter");
    std::string const sText = "XAssertion. Expression \"x>0\" failed. \nInfo: \"bad\"";
    EXPECT_EQ(oProgram.Run({"assert"}).sOutput, "6 2 f.cpp 7 0 " + sText + "\n");
    EXPECT_EQ(oProgram.ReadLog(), "T ERR \nHistory 0: Number=6,Text=" + sText + ",File=f.cpp,Line=7\n");
    EXPECT_EQ(oProgram.Run({"nested", "debug:after"}).sOutput, "6 2 f.cpp 7 0 " + sText + "\n1 calls\n");
    EXPECT_TRUE(oProgram.ReadLog().ends_with("T P DEB Id after\n")) << "no lock is left held";
}

TEST(Assertions, LetTheCancellationOfTheirThreadPass)
{
    TestProgram const oProgram("Reporter");
    EXPECT_EQ(oProgram.Run({"cancel:20", "debug:after"}).iExitCode, 0);
    EXPECT_TRUE(oProgram.ReadLog().ends_with("T P DEB Id after\n")) << "no lock is left held";

    // With a limit, the log keeps signals away while it writes.
    std::filesystem::remove(oProgram.GetPath() / "Logfile.txt");
    std::filesystem::create_symlink("/dev/null", oProgram.GetPath() / "Logfile.txt");
    EXPECT_EQ(oProgram.Run({"limit:1000000000", "cancel:100"}).iExitCode, 0);
}

TEST(LogPoints, AreSwitchedByTheIniFile)
{
    std::string const sOff = "0 0\n0 0\n0 0\n";
    // The levels are those of Task, Pipe and Off; two places share the function that makes the text.
    std::string const sRound = "T P DEB Task shared\nT P DEB Pipe shared\n";
    Rows<std::string, std::string, std::string> aRows = {
        {"", sOff, ""},
        {"[Debug]\nEnable=0\n[Debug/Switch]\nTask=1\n", sOff, ""},
        {"[Debug]\nEnable=2\n[Debug/Switch]\nTask=-1\nOff=yes\n", "-1 -1\n0 0\n0 0\n", ""},
        {"[Debug]\nEnable=1\n[Debug/Switch]\nTask=2\nPipe=1\n", "2 2\n1 1\n0 0\n", sRound + sRound},
    };
    for (auto const & [sIni, sLevels, sLog] : aRows)
    {
        TestProgram const oProgram("Reporter");
        oProgram.WriteFile("Reporter.ini", sIni);
        EXPECT_EQ(oProgram.Run({"level:Task", "level:Pipe", "level:Off", "shared"}).sOutput, sLevels);
        EXPECT_EQ(oProgram.ReadLog(), sLog) << sIni;
    }
    EXPECT_TRUE(Asserts("pLevel!=NULL", "Invalid registration. Identifier=Id in f.cpp, 7",
        [] { Support::RegisterLogPoint(nullptr, "Id", "f.cpp", 7); }));
}

TEST(ApplicationIni, IsReadBeforeTheFirstLineAndCountsAsAWhole)
{
    TestProgram const oProgram("Reporter");
    EXPECT_EQ(oProgram.Run({"chapters"}).sOutput, "0 chapters\n");

    oProgram.WriteFile("Reporter.ini", "[A]\nx=1\n[B]\n");
    EXPECT_EQ(oProgram.Run({"chapters"}).sOutput, "2 chapters\n");

    oProgram.WriteFile("Reporter.ini", "[A]\nx=1\nbad\n");
    std::string const sLine = "Error opening inifile: Error while reading file 'Reporter.ini', line 3.\n";
    EXPECT_EQ(oProgram.Run({"chapters"}).sOutput, "0 chapters\n");
    EXPECT_EQ(oProgram.Run({}).sErrors, "");
    EXPECT_EQ(oProgram.ReadFile("error_opening_inifile.log"), sLine + sLine);

    std::filesystem::remove(oProgram.GetPath() / "error_opening_inifile.log");
    std::filesystem::create_directory(oProgram.GetPath() / "error_opening_inifile.log");
    EXPECT_EQ(oProgram.Run({}).sErrors, sLine);
}

TEST(ApplicationIni, NeverBlocksTheStart)
{
    TestProgram const oProgram("Reporter");
    std::string const sIni = oProgram.GetPath() / "Reporter.ini";
    ASSERT_EQ(::mkfifo(sIni.c_str(), 0600), 0);
    EXPECT_EQ(oProgram.Run({"chapters"}).sOutput, "0 chapters\n");
    EXPECT_FALSE(oProgram.HasFile("error_opening_inifile.log")) << "as if there were none";
}
