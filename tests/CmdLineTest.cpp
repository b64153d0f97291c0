#include "TestChild.h"
#include "TestPrelude.h"

#include <csignal>
#include <iomanip>

#include <fcntl.h>
#include <unistd.h>

using namespace tsl;
using namespace tsltest;

namespace
{

using Clock = std::chrono::steady_clock;

void Start(Child & oChild)
{
    ASSERT_TRUE(oChild.Start().IsOk());
    ASSERT_GT(oChild.GetProcessId(), 0);
}

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

std::string RunAndRead(Child & oChild)
{
    Start(oChild);
    return ReadOutput(oChild);
}

class Resources
{
public:
    void ExpectTheSame() const
    {
        EXPECT_EQ(CountEntries("/proc/self/fd"), m_iDescriptors);
        EXPECT_EQ(CountEntries("/proc/self/task"), m_iThreads);
        EXPECT_FALSE(HasChildren());
    }

private:
    std::size_t m_iDescriptors = CountEntries("/proc/self/fd");
    std::size_t m_iThreads = CountEntries("/proc/self/task");
};

/// Whether the process, ended or not, has not been reaped. Its end is waited for.
bool IsZombie(int iProcessId, int iOptions = 0)
{
    siginfo_t oInfo{};
    return ::waitid(P_PID, static_cast<id_t>(iProcessId), &oInfo, WEXITED | WNOWAIT | iOptions) == 0;
}

TEST(ChildCommands, AreMadeOfArgumentsAndSplitAtWhiteSpaceOutsideOfQuotes)
{
    CmdLine oCommand;
    for (char const * const sArgument : {"a b", "c", "d\te", "\\\""})
        oCommand.AddArg(sArgument);
    EXPECT_EQ(oCommand.GetCommand().s_str(), "\"a b\" c \"d\te\" \\\"");
    Child oChild(R"(arguments  a	"b c" d"e  f"g "" \\ \" x "y)");
    EXPECT_EQ(RunAndRead(oChild), "61.\n622063.\n646520206667.\n.\n5c5c.\n5c20782079.\n");

    // The object's own command is an argument like another.
    oCommand.SetApplication("program");
    oCommand.AddArg(oCommand.GetCommand());
    oCommand.AddArg(oCommand.GetCommand());
    EXPECT_EQ(oCommand.GetCommand().s_str(), "program program \"program program\"");
}

TEST(ChildCommands, HandOverArgumentsOfAllBytesUnchanged)
{
    Child oChild("arguments");
    std::ostringstream oExpected;
    oExpected << std::hex << std::setfill('0');
    std::string sArgument;
    for (int iByte = 1; iByte < 256; ++iByte)
        if (iByte != '"')
        {
            sArgument += static_cast<char>(iByte);
            oExpected << std::setw(2) << iByte;
            if (iByte % 7 != 0)
                continue;
            oChild.AddArg(std::exchange(sArgument, ""));
            oExpected << ".\n";
        }
    oChild.AddArg(sArgument);
    EXPECT_EQ(RunAndRead(oChild), oExpected.str() + ".\n");
}

TEST(ChildCommands, OfLessThan1024CharactersAreAccepted)
{
    Child oChild("exit 7");
    oChild.SetCommand(oChild.GetCommand() + std::string(1023 - oChild.GetCommand().GetLength(), ' '));
    Start(oChild);
    EXPECT_EQ(oChild.WaitTermination(), CmdLine::eWaitTerminated);
    EXPECT_EQ(oChild.GetExitCode(), 7);

    oChild.SetCommand(oChild.GetCommand() + " ");
    EXPECT_EQ(
        Tell(oChild.Start()), "2 Invalid CommandLine. CommandLine exceeds maximal length of 1024 chars.");
    EXPECT_EQ(oChild.GetProcessId(), 0);
}

TEST(ChildStart, FailsWithTheErrorOfTheSystem)
{
    TestProgram const oFolder("Child");
    oFolder.WriteFile("plain", "no program");
    oFolder.WriteFile("broken", "no program");
    std::filesystem::permissions(oFolder.GetPath() / "broken", std::filesystem::perms::owner_all);
    Rows<std::string, int> aRows = {
        {"", ENOENT},
        {"no_such_program", ENOENT},
        {oFolder.GetPath(), EACCES},
        {oFolder.GetPath() / "plain", EACCES},
        {oFolder.GetPath() / "plain/x", ENOTDIR},
        {oFolder.GetPath() / "broken", ENOEXEC},
    };
    Resources const oBefore;
    for (auto const & [sCommand, iError] : aRows)
        for (int const iMode : {0, WITH_READERS, CmdLine::eModeSuspended | CmdLine::eModeRedirect})
        {
            SCOPED_TRACE(testing::Message() << sCommand << " in mode " << iMode);
            Child oChild("", iMode);
            oChild.SetCommand(sCommand);
            Result const oResult = oChild.Start();
            if (iError == ENOEXEC && iMode & CmdLine::eModeSuspended)
            {
                // The system looks into the file when the child is continued.
                ::kill(oChild.GetProcessId(), SIGCONT);
                EXPECT_EQ(oChild.WaitTermination(), CmdLine::eWaitTerminated);
                EXPECT_EQ(oChild.GetExitCode(), 127);
                continue;
            }
            EXPECT_EQ(Tell(oResult), "10 Error while creating process. <- " + Tell(OS::FormatError(iError))
                                         + " <- " + std::to_string(iError) + " The command is '" + sCommand
                                         + "'.");
            EXPECT_EQ(oChild.GetProcessId(), 0);
            EXPECT_EQ(oChild.WaitTermination(), CmdLine::eWaitFailed);
        }

    for (int const iMode : {WITH_READERS, WITH_READERS | CmdLine::eModeSuspended})
    {
        NoMoreThreads const oScope;
        Child oChild("hang", iMode);
        EXPECT_EQ(oChild.Start().GetErrorCode(), 10) << "no reader can be started";
        EXPECT_EQ(oChild.GetProcessId(), 0);
        EXPECT_EQ(oChild.WaitTermination(), CmdLine::eWaitFailed);
    }
    oBefore.ExpectTheSame();
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
        Start(oChild);
        Start(oDetached);
        // The signal would disturb the sanitizer of a child that runs.
        for (Child * const pChild : {&oChild, &oDetached})
            if (iMode & CmdLine::eModeSuspended)
            {
                EXPECT_EQ(pChild->WaitTermination(50), CmdLine::eWaitTimeout) << "it is suspended";
                ::kill(pChild->GetProcessId(), SIGCONT);
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
        EXPECT_EQ(sOutcome, "0 1 7\nout one\n0 1 2 \nerr two\n") << sPreparation;
        for (char const * sLine : {"CmdLine STDOUT: one\n", "CmdLine STDERR: two\n"})
            EXPECT_TRUE(Contains(oProgram.ReadLog(), sLine));
    }
}

TEST(ChildStart, IsPossibleOnManyThreadsAtOnce)
{
    RunOnThreads(8,
        [&](int iThread)
        {
            for (int i = 0; i < 10; ++i)
            {
                Child oChild("descriptors exit " + std::to_string(iThread), WITH_READERS);
                Start(oChild);
                oChild.WaitTermination();
                EXPECT_EQ(oChild.TakeOutput(), "0 1 2 \n");
                EXPECT_EQ(oChild.GetExitCode(), iThread);
            }
        });
}

TEST(ChildEnd, IsReportedByTheExitCode)
{
    for (auto const & [sActions, iExitCode] :
        std::map<std::string, int>{{"", 0}, {"exit 255", 255}, {"signal 9", 137}, {"close exit 3", 3}})
    {
        SCOPED_TRACE(sActions);
        Child oChild(sActions, WITH_READERS);
        EXPECT_EQ(oChild.GetExitCode(), 0);
        Start(oChild);
        EXPECT_EQ(oChild.WaitTermination(), CmdLine::eWaitTerminated);
        EXPECT_EQ(oChild.GetExitCode(), iExitCode);
        EXPECT_EQ(oChild.WaitTermination(), CmdLine::eWaitFailed);
        EXPECT_EQ(oChild.Kill(1).GetErrorCode(), 3);
        EXPECT_EQ(oChild.GetExitCode(), iExitCode);
    }
}

TEST(ChildEnd, ComesByKillWhateverTheChildDoesAndReleasesAllResources)
{
    auto const fRun = [](std::string const & sActions)
    {
        Child oChild("out ready\\n " + sActions, WITH_READERS);
        Start(oChild);
        EXPECT_EQ(oChild.Start().GetErrorCode(), 3);
        EXPECT_TRUE(WaitUntil([&] { return oChild.TakeOutput() == "ready\n"; }));

        EXPECT_EQ(oChild.WaitTermination(30), CmdLine::eWaitTimeout);
        EXPECT_EQ(oChild.WaitTermination(0), CmdLine::eWaitTimeout);
        EXPECT_TRUE(oChild.IsRunning());
        EXPECT_EQ(oChild.GetExitCode(), 259);

        EXPECT_TRUE(oChild.Kill(1234).IsOk());
        EXPECT_EQ(oChild.WaitTermination(), CmdLine::eWaitTerminated);
        EXPECT_EQ(oChild.GetExitCode(), 1234);
    };
    fRun("hang");
    Resources const oBefore;
    for (char const * const sActions : {"hang", "ignore 15 hang", "signal 19 hang", "close hang"})
    {
        SCOPED_TRACE(sActions);
        fRun(sActions);
        oBefore.ExpectTheSame();
    }
    fRun("daemon hang");
}

TEST(ChildEnd, DoesNotWaitForAProgramThatKeepsTheStreams)
{
    for (char const * const sActions : {"daemon", "noise"})
    {
        auto pChild = std::make_unique<Child>(sActions, WITH_READERS);
        Start(*pChild);
        static_cast<void>(CmdLine(*pChild)); // the end of a copy ends nothing
        EXPECT_TRUE(WaitUntil([&] { return !pChild->IsRunning() || pChild->GetExitCode() == 0; }));
        EXPECT_TRUE(pChild->IsRunning()) << sActions;
        Clock::time_point const oStart = Clock::now();
        pChild.reset();
        EXPECT_LT(Clock::now() - oStart, std::chrono::seconds(1)) << sActions;
    }
}

/// Starts a child and destroys its object. Returns its process id.
int Abandon(std::string const & sActions, int iMode = 0)
{
    CmdLine oChild;
    oChild.SetCommand(CHILD + ' ' + sActions);
    oChild.SetMode(iMode);
    int iProcessId = 0;
    EXPECT_TRUE(oChild.Run(iProcessId).IsOk());
    return iProcessId;
}

void KillAbandoned(int iProcessId)
{
    EXPECT_EQ(::kill(iProcessId, SIGKILL), 0);
    EXPECT_TRUE(IsZombie(iProcessId));
}

TEST(AbandonedChildren, AreReapedLaterAndTheProgramsOwnOnesNever)
{
    int const iProcessId = Abandon("hang");
    pid_t const iForeign = ::fork();
    if (iForeign == 0)
        ::_exit(5);
    KillAbandoned(iProcessId);
    EXPECT_TRUE(IsZombie(iForeign));

    Child oChild("exit 0");
    Start(oChild);
    EXPECT_FALSE(IsZombie(iProcessId, WNOHANG));
    int iStatus = 0;
    EXPECT_EQ(::waitpid(iForeign, &iStatus, 0), iForeign);
    EXPECT_EQ(WEXITSTATUS(iStatus), 5);

    // Queries reap as well.
    Child oRunning("hang");
    Start(oRunning);
    int const iOther = Abandon("hang");
    KillAbandoned(iOther);
    EXPECT_TRUE(WaitUntil([&] { return oRunning.IsRunning() && !IsZombie(iOther); }));
}

TEST(AbandonedChildren, CostNoDescriptorAndAreReapedByThoseThatFollow)
{
    std::vector<int> vProcessIds(300);
    for (int & iProcessId : vProcessIds)
        iProcessId = Abandon("hang");
    for (int const iProcessId : vProcessIds)
        KillAbandoned(iProcessId);

    // A start and a destruction look after 64 each.
    for (std::size_t i = 0; i < vProcessIds.size() / 64; ++i)
        Abandon("");
    for (int const iProcessId : vProcessIds)
        EXPECT_FALSE(IsZombie(iProcessId));
    EXPECT_LT(CountEntries("/proc/self/fd"), 100U);
}

TEST(AbandonedChildren, AreEndedIfTheyWereNeverContinued)
{
    for (int const iMode : {0, CmdLine::eModeDetached + 0, WITH_READERS})
        EXPECT_FALSE(IsZombie(Abandon("hang", CmdLine::eModeSuspended | iMode))) << iMode;

    // Continued at any moment before.
    for (int const iPause : {0, 0, 0, 50, 1000})
    {
        auto pChild = std::make_unique<CmdLine>();
        pChild->SetCommand(CHILD + " hang");
        pChild->SetMode(CmdLine::eModeSuspended);
        int iProcessId = 0;
        EXPECT_TRUE(pChild->Run(iProcessId).IsOk());
        EXPECT_EQ(::kill(iProcessId, SIGCONT), 0);
        std::this_thread::sleep_for(std::chrono::microseconds(iPause));
        pChild.reset();
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
        Start(oChild);
        EXPECT_TRUE(WaitUntil([&] { return !oChild.IsRunning(); })) << "and its streams are read";
        EXPECT_EQ(oChild.TakeOutput(), "one\ntwo\nthree\n");
        EXPECT_EQ(oChild.TakeErrors(), "1\n2\n");
        EXPECT_TRUE(oChild.ReadStdStreamUntilEof(CmdLine::eStdOut).IsOk()) << "a thread has read it";

        // Lines of the next run queue after those of this one.
        Start(oChild);
        oChild.WaitTermination();
        oChild.SetMode(CmdLine::eModeRedirect);
        EXPECT_EQ(RunAndRead(oChild), "one\ntwo\nthree\none\ntwo\nthree\n");
        EXPECT_TRUE(oChild.ReadStdStreamUntilEof(CmdLine::eStdErr).IsOk());
        EXPECT_EQ(oChild.TakeErrors(), "1\n2\n1\n2\n");
    }
}

TEST(ChildStreams, LoseNothingInTheModeOfLineFeeds)
{
    // Unread limit, lines of the output.
    Rows<unsigned int, char const *> aRows = {
        {0, "one\r\n\n\ttwo\x1b[1mthree\n\nlast\n"},
        {4, "one\r\n\n\ttwo\n\x1b[1m\nthre\ne\n\nlast\n"},
    };
    for (auto const & [iLimit, sLines] : aRows)
        for (unsigned int const iBufferSize : {1u, 1024u})
        {
            Child oChild(
                "out one\\r\\n\\n\\ttwo\x1b[1mthree\\n\\nlast", WITH_READERS | CmdLine::eModeLineFeeds);
            oChild.SetBufferSize(iBufferSize);
            oChild.SetUnreadLimit(iLimit);
            Start(oChild);
            std::string sTaken;
            for (bool bRunning = true; bRunning;)
            {
                bRunning = oChild.IsRunning();
                sTaken += oChild.TakeOutput().s_str();
            }
            EXPECT_EQ(sTaken, sLines) << iLimit << ' ' << iBufferSize;
        }
}

TEST(ChildStreams, HoldTheChildBackAtTheUnreadLimit)
{
    Child oChild("flood 2000000", WITH_READERS);
    oChild.SetUnreadLimit(10000);
    Start(oChild);
    // Nobody reads: what the pipe and the queue take is written, and no more.
    EXPECT_EQ(oChild.WaitTermination(200), CmdLine::eWaitTimeout);
    std::size_t iBytes = oChild.TakeErrors().GetLength();
    EXPECT_LT(iBytes, 100'000u);

    for (bool bRunning = true; bRunning;)
    {
        bRunning = oChild.IsRunning();
        while (std::unique_ptr<String> const pLine{oChild.ReceiveStdOut()})
            iBytes += pLine->GetLength() + 1;
        while (std::unique_ptr<String> const pLine{oChild.ReceiveStdErr()})
            iBytes += pLine->GetLength() + 1;
    }
    EXPECT_GE(iBytes, 2'000'000u);

    // Whoever waits for the end of one stream cannot take lines of the other.
    Start(oChild);
    EXPECT_TRUE(oChild.ReadStdStreamUntilEof(CmdLine::eStdErr).IsOk());
    EXPECT_TRUE(oChild.ReadStdStreamUntilEof(CmdLine::eStdOut).IsOk());
    EXPECT_GE(oChild.TakeOutput().GetLength() + oChild.TakeErrors().GetLength(), 2'000'000u);
}

TEST(ChildStreams, CannotBeReadWithoutChildOrRedirection)
{
    Child oChild("hang", CmdLine::eModeReaderThreads);
    EXPECT_EQ(Tell(oChild.ReadStdStreamUntilEof(CmdLine::eStdOut)), "1 No Process starteded.");
    Start(oChild);
    EXPECT_EQ(oChild.GetMode(), 0);
    EXPECT_EQ(Tell(oChild.ReadStdStreamUntilEof(CmdLine::eStdErr)), "2 No redirection aktivated");
}

TEST(ChildStreams, LoseNothingOfMuchOutput)
{
    Child oChild("flood 20000000", WITH_READERS);
    Start(oChild);
    std::size_t iBytes = 0;
    for (bool bRunning = true; bRunning;)
    {
        bRunning = oChild.IsRunning();
        iBytes += oChild.TakeOutput().GetLength() + oChild.TakeErrors().GetLength();
    }
    EXPECT_GE(iBytes, 20'000'000u);
    Child oPlain("line 3000000");
    EXPECT_EQ(RunAndRead(oPlain).size(), 3'000'001u) << "in one line, without reader threads";
}

} // namespace
