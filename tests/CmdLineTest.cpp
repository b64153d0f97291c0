#include "TestPrelude.h"
#include "ProcessTest.h"
#include "TestMessages.h"

#include <csignal>
#include <iomanip>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace tsl;
using namespace tsltest;

namespace
{

using Clock = std::chrono::steady_clock;

constexpr int WITH_READERS = CmdLine::eModeRedirect | CmdLine::eModeReaderThreads;

// In quotes: the project may be built in a folder with a blank in its path.
std::string const CHILD = "\"" TESSEL_TEST_PROGRAMS "/Child\"";

/// A child that does what the actions say, see tests/programs/Child.c. In the end it is killed
/// and nothing of it left, for tests that count.
class Child : public CmdLine
{
public:
    explicit Child(std::string const & sActions, int iMode = eModeRedirect)
    {
        SetMode(iMode);
        SetCommand(CHILD + ' ' + sActions);
    }
    ~Child() override
    {
        static_cast<void>(Kill(0));
        WaitTermination();
    }

    Child & Start()
    {
        EXPECT_TRUE(Run(iProcessId).IsOk());
        EXPECT_GT(iProcessId, 0);
        return *this;
    }

    int iProcessId = -1;
};

/// What the child writes to its standard output, each line with an end.
std::string ReadOutput(CmdLine & oChild)
{
    std::vector<String> vLines;
    EXPECT_TRUE(oChild.ReadStdStreamUntilEof(CmdLine::eStdOut, vLines).IsOk());
    std::string sText;
    for (String const & sLine : vLines)
        sText += sLine.s_str() + '\n';
    return sText;
}

/// What the child has written by now, taken line by line.
std::string TakeLines(CmdLine & oChild, String * (CmdLine::*fReceive)())
{
    std::string sText;
    while (std::unique_ptr<String> const pLine{(oChild.*fReceive)()})
        sText += pLine->s_str() + '\n';
    return sText;
}

std::size_t CountEntries(char const * sFolder)
{
    std::filesystem::directory_iterator const oFirst(sFolder);
    return static_cast<std::size_t>(std::distance(begin(oFirst), end(oFirst)));
}

bool HasChildren()
{
    siginfo_t oInfo{};
    return ::waitid(P_ALL, 0, &oInfo, WEXITED | WNOHANG | WNOWAIT) == 0;
}

TEST(ChildCommands, AreMadeOfArgumentsAndSplitAtWhiteSpaceOutsideOfQuotes)
{
    CmdLine oCommand;
    for (char const * const sArgument : {"a b", "c", "d\te", "\\\""})
        oCommand.AddArg(sArgument);
    EXPECT_EQ(oCommand.GetCommand().s_str(), "\"a b\" c \"d\te\" \\\"");
    oCommand.SetApplication("my program");
    EXPECT_EQ(oCommand.GetCommand().s_str(), "\"my program\"");

    Child oChild(R"(arguments  a	"b c" d"e  f"g "" \\ \" x "y)");
    EXPECT_EQ(ReadOutput(oChild.Start()), "61.\n622063.\n646520206667.\n.\n5c5c.\n5c20782079.\n");
}

TEST(ChildCommands, MayBeMadeOfTheObjectsOwnCommand)
{
    CmdLine oCommand;
    oCommand.SetApplication("program");
    oCommand.AddArg(oCommand.GetCommand());
    EXPECT_EQ(oCommand.GetCommand().s_str(), "program program");
    oCommand.AddArg(oCommand.GetCommand());
    EXPECT_EQ(oCommand.GetCommand().s_str(), "program program \"program program\"");
    oCommand.SetCommand("my program");
    oCommand.SetApplication(oCommand.GetCommand());
    EXPECT_EQ(oCommand.GetCommand().s_str(), "\"my program\"");
}

TEST(ChildCommands, HandOverArgumentsOfAllBytesUnchanged)
{
    std::mt19937 oRandom(4711);
    auto const fPick = [&](int iMin, int iMax)
    { return std::uniform_int_distribution<int>(iMin, iMax)(oRandom); };
    for (int iVector = 0; iVector < 100; ++iVector)
    {
        Child oChild("arguments");
        std::ostringstream oExpected;
        oExpected << std::hex << std::setfill('0');
        while (oChild.GetCommand().GetLength() < 900 && fPick(0, 9) > 0)
        {
            std::string sArgument(static_cast<std::size_t>(fPick(1, 60)), '\0');
            for (char & c : sArgument)
                while (c == '\0' || c == '"')
                    c = static_cast<char>(fPick(1, 255));
            oChild.AddArg(sArgument);
            for (char const c : sArgument)
                oExpected << std::setw(2) << +static_cast<unsigned char>(c);
            oExpected << ".\n";
        }
        ASSERT_EQ(ReadOutput(oChild.Start()), oExpected.str()) << oChild.GetCommand().s_str();
    }
}

TEST(ChildCommands, OfLessThan1024CharactersAreAccepted)
{
    Child oChild("exit 7");
    oChild.SetCommand(oChild.GetCommand() + std::string(1023 - oChild.GetCommand().GetLength(), ' '));
    oChild.Start();
    EXPECT_EQ(oChild.WaitTermination(), CmdLine::eWaitTerminated);
    EXPECT_EQ(oChild.GetExitCode(), 7);

    oChild.SetCommand(oChild.GetCommand() + " ");
    EXPECT_EQ(Tell(oChild.Run(oChild.iProcessId)),
        "2 Invalid CommandLine. CommandLine exceeds maximal length of 1024 chars.");
    EXPECT_EQ(oChild.iProcessId, 0);
}

TEST(ChildStart, FailsWithTheErrorOfTheSystem)
{
    TestProgram const oFolder("Child");
    oFolder.WriteFile("plain", "no program");
    oFolder.WriteFile("broken", "no program");
    std::filesystem::permissions(oFolder.GetFolder() / "broken", std::filesystem::perms::owner_all);

    Rows<std::string, int> aRows = {{"", ENOENT}, {"no_such_program", ENOENT}, {"/no/such program", ENOENT},
        {oFolder.GetFolder() / "plain", EACCES}, {oFolder.GetFolder(), EACCES},
        {oFolder.GetFolder() / "plain/x", ENOTDIR}, {oFolder.GetFolder() / "broken", ENOEXEC}};
    std::size_t const iDescriptors = CountEntries("/proc/self/fd");
    for (auto const & [sCommand, iError] : aRows)
        for (int const iMode : {0, WITH_READERS, CmdLine::eModeSuspended | CmdLine::eModeRedirect})
        {
            Child oChild("", iMode);
            oChild.SetCommand(sCommand);
            Result const oResult = oChild.Run(oChild.iProcessId);
            if (iError == ENOEXEC && iMode & CmdLine::eModeSuspended)
            {
                // The system looks into the file when the child is let go.
                ::kill(oChild.iProcessId, SIGCONT);
                EXPECT_EQ(oChild.WaitTermination(), CmdLine::eWaitTerminated);
                EXPECT_EQ(oChild.GetExitCode(), 127);
                continue;
            }
            EXPECT_EQ(Tell(oResult), "10 Error while creating process. <- " + Tell(OS::FormatError(iError)));
            EXPECT_EQ(oChild.iProcessId, 0);
            EXPECT_FALSE(oChild.IsRunning());
            EXPECT_EQ(oChild.WaitTermination(), CmdLine::eWaitFailed);
        }
    EXPECT_EQ(CountEntries("/proc/self/fd"), iDescriptors);
    EXPECT_FALSE(HasChildren());
}

TEST(ChildStart, LeavesNoChildBehindIfAReaderCannotBeStarted)
{
    std::size_t const iDescriptors = CountEntries("/proc/self/fd");
    for (int const iMode : {WITH_READERS, WITH_READERS | CmdLine::eModeSuspended})
    {
        Child oChild("hang", iMode);
        {
            NoMoreThreads const oScope;
            EXPECT_EQ(oChild.Run(oChild.iProcessId).GetErrorCode(), 10);
        }
        EXPECT_EQ(oChild.iProcessId, 0);
        EXPECT_FALSE(HasChildren());
        EXPECT_EQ(CountEntries("/proc/self/fd"), iDescriptors);
        EXPECT_EQ(oChild.WaitTermination(), CmdLine::eWaitFailed);
        oChild.Start();
    }
}

TEST(ChildStart, HandsOverThreeStreamsAndFreshSignals)
{
    std::vector<int> vOpen;
    for (int i = 0; i < 100; ++i)
        vOpen.push_back(::open("/dev/null", O_RDONLY));
    sigset_t oBlocked;
    sigset_t oFormer;
    ::sigemptyset(&oBlocked);
    ::sigaddset(&oBlocked, SIGUSR1);
    ::pthread_sigmask(SIG_BLOCK, &oBlocked, &oFormer);
    auto const fFormer = std::signal(SIGPIPE, SIG_IGN);

    for (int const iMode : {CmdLine::eModeRedirect + 0, CmdLine::eModeRedirect | CmdLine::eModeSuspended})
    {
        Child oChild("descriptors signals session", iMode);
        Child oDetached("session", iMode | CmdLine::eModeDetached);
        oChild.Start();
        oDetached.Start();
        // A child that runs is left alone: the signal would disturb the sanitizer that looks through it at
        // its end.
        for (Child * const pChild : {&oChild, &oDetached})
            if (iMode & CmdLine::eModeSuspended)
            {
                EXPECT_EQ(pChild->WaitTermination(50), CmdLine::eWaitTimeout) << "it stands at its begin";
                ::kill(pChild->iProcessId, SIGCONT);
            }
        EXPECT_EQ(ReadOutput(oChild), "0 1 2 \nmember\n") << iMode;
        EXPECT_EQ(ReadOutput(oDetached), "leader\n") << iMode;
    }

    std::signal(SIGPIPE, fFormer);
    ::pthread_sigmask(SIG_SETMASK, &oFormer, nullptr);
    for (int const iOpen : vOpen)
        ::close(iOpen);
}

TEST(ChildStart, WorksInAProgramWithClosedStreamsOrIgnoredChildren)
{
    for (std::string const sPreparation : {"empty", "closed", "deaf"})
    {
        TestProgram const oProgram("Reporter");
        oProgram.WriteFile("Reporter.ini", "[Debug]\nEnable=1\n[Debug/Switch]\nCmdLine=1\n");
        oProgram.Run({sPreparation, "start:" + CHILD + R"( out one\n err two\n descriptors exit 7)"});

        // Not every system keeps the exit code of a child that was not waited for.
        std::string sOutcome = oProgram.ReadFile("outcome");
        if (sPreparation == "deaf" && sOutcome.starts_with("0 1 -1\n"))
            sOutcome.replace(4, 2, "7");
        EXPECT_EQ(sOutcome, "0 1 7\nout one\nout 0 1 2 \nerr two\n") << sPreparation;
        for (char const * sLine : {"CmdLine STDOUT: one\n", "CmdLine STDERR: two\n"})
            EXPECT_NE(ReadLog(oProgram).find(sLine), std::string::npos);
    }
}

TEST(ChildStart, IsPossibleOnManyThreadsAtOnce)
{
    RunOnThreads(8,
        [&](int iThread)
        {
            for (int i = 0; i < 10; ++i)
            {
                std::string const sText = std::to_string(iThread * 100 + i);
                Child oChild(
                    "descriptors out " + sText + "\\n exit " + std::to_string(iThread), WITH_READERS);
                oChild.Start();
                oChild.WaitTermination();
                EXPECT_EQ(TakeLines(oChild, &CmdLine::ReceiveStdOut), "0 1 2 \n" + sText + '\n');
                EXPECT_EQ(oChild.GetExitCode(), iThread);
            }
        });
}

TEST(ChildEnd, IsToldByTheExitCode)
{
    Rows<char const *, int> aRows = {{"", 0}, {"exit 7", 7}, {"exit 255", 255}, {"signal 9", 137},
        {"signal 15", 143}, {"close exit 3", 3}};
    for (auto const & [sActions, iExitCode] : aRows)
    {
        Child oChild(sActions, WITH_READERS);
        EXPECT_EQ(oChild.GetExitCode(), 0);
        oChild.Start();
        EXPECT_EQ(oChild.WaitTermination(), CmdLine::eWaitTerminated) << sActions;
        EXPECT_EQ(oChild.GetExitCode(), iExitCode) << sActions;
        EXPECT_EQ(oChild.WaitTermination(), CmdLine::eWaitFailed) << sActions;
        EXPECT_EQ(oChild.Kill(1).GetErrorCode(), 3) << sActions;
        EXPECT_EQ(oChild.GetExitCode(), iExitCode) << sActions;
    }
    EXPECT_FALSE(HasChildren());
}

TEST(ChildEnd, ComesByKillWhateverTheChildDoes)
{
    for (char const * sActions : {"hang", "ignore 15 hang", "signal 19 hang", "close hang", "daemon hang"})
    {
        Child oChild(std::string("out ready\\n ") + sActions, WITH_READERS);
        oChild.Start();
        EXPECT_EQ(oChild.Run(oChild.iProcessId).GetErrorCode(), 3) << sActions;
        EXPECT_TRUE(WaitUntil([&] { return TakeLines(oChild, &CmdLine::ReceiveStdOut) == "ready\n"; }));

        Clock::time_point const oStart = Clock::now();
        EXPECT_EQ(oChild.WaitTermination(30), CmdLine::eWaitTimeout) << sActions;
        EXPECT_GE(Clock::now() - oStart, std::chrono::milliseconds(30)) << sActions;
        EXPECT_EQ(oChild.WaitTermination(0), CmdLine::eWaitTimeout) << sActions;
        EXPECT_TRUE(oChild.IsRunning());
        EXPECT_EQ(oChild.GetExitCode(), 259) << sActions;

        EXPECT_TRUE(oChild.Kill(1234).IsOk()) << sActions;
        EXPECT_EQ(oChild.WaitTermination(), CmdLine::eWaitTerminated) << sActions;
        EXPECT_EQ(oChild.GetExitCode(), 1234) << sActions;
    }
}

TEST(ChildEnd, DoesNotWaitForAProgramThatKeepsTheStreams)
{
    for (char const * sActions : {"daemon", "noise"})
    {
        Clock::time_point oStart;
        {
            Child oChild(sActions, WITH_READERS);
            oChild.Start();
            CmdLine const oCopy(oChild);
            EXPECT_TRUE(WaitUntil([&] { return !oChild.IsRunning() || oChild.GetExitCode() == 0; }));
            EXPECT_TRUE(oChild.IsRunning()) << sActions;
            oStart = Clock::now();
        }
        EXPECT_LT(Clock::now() - oStart, std::chrono::seconds(1)) << sActions;
    }
}

TEST(ChildEnd, LeavesNothingBehind)
{
    auto const fCycle = []
    {
        Child oChild("hang", WITH_READERS);
        oChild.Start();
        EXPECT_TRUE(oChild.Kill(9).IsOk());
        EXPECT_EQ(oChild.WaitTermination(), CmdLine::eWaitTerminated);
    };
    fCycle();
    std::size_t const iDescriptors = CountEntries("/proc/self/fd");
    std::size_t const iThreads = CountEntries("/proc/self/task");
    for (int i = 0; i < 100; ++i)
        fCycle();
    EXPECT_EQ(CountEntries("/proc/self/fd"), iDescriptors);
    EXPECT_EQ(CountEntries("/proc/self/task"), iThreads);
    EXPECT_FALSE(HasChildren());
}

TEST(ChildEnd, IsNotWaitedForByTheDestructorAndReapedLater)
{
    int iProcessId = 0;
    {
        CmdLine oChild;
        oChild.SetCommand(CHILD + " hang");
        ASSERT_TRUE(oChild.Run(iProcessId).IsOk());
    }
    pid_t const iForeign = ::fork();
    if (iForeign == 0)
        ::_exit(5);
    EXPECT_EQ(::kill(iProcessId, SIGKILL), 0);
    siginfo_t oInfo{};
    ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(iProcessId), &oInfo, WEXITED | WNOWAIT), 0);
    ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(iForeign), &oInfo, WEXITED | WNOWAIT), 0);

    Child("exit 0").Start();
    EXPECT_EQ(::waitid(P_PID, static_cast<id_t>(iProcessId), &oInfo, WEXITED | WNOWAIT | WNOHANG), -1);
    int iStatus = 0;
    EXPECT_EQ(::waitpid(iForeign, &iStatus, 0), iForeign);
    EXPECT_EQ(WEXITSTATUS(iStatus), 5);
}

/// Starts a child and gives it up. Returns its process id.
int Abandon(std::string const & sActions, int iMode = 0)
{
    CmdLine oChild;
    oChild.SetCommand(CHILD + ' ' + sActions);
    oChild.SetMode(iMode);
    int iProcessId = 0;
    EXPECT_TRUE(oChild.Run(iProcessId).IsOk());
    return iProcessId;
}

/// Whether the process has been reaped, or is waited for until it has ended.
bool IsGone(int iProcessId)
{
    siginfo_t oInfo{};
    return ::waitid(P_PID, static_cast<id_t>(iProcessId), &oInfo, WEXITED | WNOWAIT) != 0;
}

/// The shortest time that 100 queries take, out of several tries.
Clock::duration MeasureQueries(CmdLine const & oChild)
{
    auto oShortest = Clock::duration::max();
    for (int iTry = 0; iTry < 50; ++iTry)
    {
        Clock::time_point const oStart = Clock::now();
        for (int i = 0; i < 100; ++i)
            EXPECT_TRUE(oChild.IsRunning());
        oShortest = std::min(oShortest, Clock::now() - oStart);
    }
    return oShortest;
}

TEST(AbandonedChildren, CostNoDescriptorAndNoTimeOfQueries)
{
    Child oChild("hang");
    oChild.Start();
    Clock::duration const oAlone = MeasureQueries(oChild);
    rlimit oFormer{};
    ::getrlimit(RLIMIT_NOFILE, &oFormer);
    rlimit const oFew{64, oFormer.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &oFew), 0);

    constexpr int COUNT = 300;
    std::vector<int> vProcessIds;
    for (int i = 0; i < COUNT; ++i)
        vProcessIds.push_back(Abandon("hang"));
    EXPECT_LT(MeasureQueries(oChild), 3 * oAlone);

    // A start and a destruction look after 64 each.
    for (int const iProcessId : vProcessIds)
        EXPECT_TRUE(::kill(iProcessId, SIGKILL) == 0 && !IsGone(iProcessId));
    for (int i = 0; i < COUNT / 64; ++i)
        Abandon("");
    EXPECT_TRUE(std::all_of(vProcessIds.begin(), vProcessIds.end(), &IsGone));
    ::setrlimit(RLIMIT_NOFILE, &oFormer);
}

TEST(AbandonedChildren, AreReapedByQueriesAsWell)
{
    Child oChild("hang");
    oChild.Start();
    int const iProcessId = Abandon("hang");
    EXPECT_TRUE(::kill(iProcessId, SIGKILL) == 0 && !IsGone(iProcessId));
    EXPECT_TRUE(WaitUntil([&] { return oChild.IsRunning() && IsGone(iProcessId); }));
}

TEST(AbandonedChildren, AreEndedIfTheyWereNeverContinued)
{
    for (int const iMode : {0, CmdLine::eModeDetached + 0, WITH_READERS})
        EXPECT_TRUE(IsGone(Abandon("hang", CmdLine::eModeSuspended | iMode))) << iMode;

    int iProcessId = 0;
    {
        Child oParent("hang", CmdLine::eModeSuspended);
        oParent.Start();
        iProcessId = oParent.iProcessId;
        CmdLine const oCopy(oParent);
    }
    EXPECT_TRUE(IsGone(iProcessId));

    // Continued at any moment before.
    for (int const iPause : {0, 0, 0, 50, 1000})
    {
        {
            CmdLine oChild;
            oChild.SetCommand(CHILD + " hang");
            oChild.SetMode(CmdLine::eModeSuspended);
            EXPECT_TRUE(oChild.Run(iProcessId).IsOk());
            EXPECT_EQ(::kill(iProcessId, SIGCONT), 0);
            std::this_thread::sleep_for(std::chrono::microseconds(iPause));
        }
        siginfo_t oInfo{};
        EXPECT_EQ(::waitid(P_PID, static_cast<id_t>(iProcessId), &oInfo, WEXITED | WNOWAIT | WNOHANG), 0);
        EXPECT_EQ(oInfo.si_pid, 0);
        ::kill(iProcessId, SIGKILL);
    }
}

TEST(ChildStreams, GiveTheLinesThatHaveEnded)
{
    for (unsigned int const iBufferSize : {1u, 3u, 1024u, 4'000'000'000u})
    {
        Child oChild(R"(out one\r\n\n\ttwo\tthree\nlost err 1\n2\nlost)", WITH_READERS);
        oChild.SetBufferSize(iBufferSize);
        oChild.Start();
        EXPECT_TRUE(WaitUntil([&] { return !oChild.IsRunning(); })) << "and its streams are read";
        EXPECT_EQ(TakeLines(oChild, &CmdLine::ReceiveStdOut), "one\ntwo\nthree\n");
        EXPECT_EQ(TakeLines(oChild, &CmdLine::ReceiveStdErr), "1\n2\n");

        EXPECT_TRUE(oChild.ReadStdStreamUntilEof(CmdLine::eStdOut).IsOk()) << "a thread has read it";

        // Lines of the next run queue behind those of this one.
        oChild.Start();
        oChild.WaitTermination();
        oChild.SetMode(CmdLine::eModeRedirect);
        oChild.Start();
        EXPECT_EQ(ReadOutput(oChild), "one\ntwo\nthree\none\ntwo\nthree\n");
        EXPECT_TRUE(oChild.ReadStdStreamUntilEof(CmdLine::eStdErr).IsOk());
        EXPECT_EQ(TakeLines(oChild, &CmdLine::ReceiveStdErr), "1\n2\n1\n2\n");
    }
}

TEST(ChildStreams, CannotBeReadWithoutChildOrRedirection)
{
    Child oChild("hang", CmdLine::eModeReaderThreads);
    EXPECT_EQ(Tell(oChild.ReadStdStreamUntilEof(CmdLine::eStdOut)), "1 No Process starteded.");
    oChild.Start();
    EXPECT_EQ(oChild.GetMode(), 0);
    EXPECT_EQ(Tell(oChild.ReadStdStreamUntilEof(CmdLine::eStdErr)), "2 No redirection aktivated");
}

TEST(ChildStreams, LoseNothingOfMuchOutputOnBoth)
{
    Child oChild("flood 20000000", WITH_READERS);
    oChild.Start();
    std::size_t iBytes = 0;
    auto const fTake = [&]
    {
        iBytes += TakeLines(oChild, &CmdLine::ReceiveStdOut).size()
                  + TakeLines(oChild, &CmdLine::ReceiveStdErr).size();
    };
    while (oChild.IsRunning())
        fTake();
    fTake();
    EXPECT_GE(iBytes, 20'000'000u);
    EXPECT_EQ(oChild.GetExitCode(), 0);

    Child oPlain("");
    oPlain.SetCommand(R"(sh -c "head -c 3000000 /dev/zero | tr '\0' x; echo")");
    EXPECT_EQ(ReadOutput(oPlain.Start()).size(), 3'000'001u) << "in one line, without reader threads";
}

} // namespace
