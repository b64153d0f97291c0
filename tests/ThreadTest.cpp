#include "TestPrelude.h"
#include "ProcessTest.h"
#include "TestMessages.h"

#include <regex>

using namespace tsltest;
using tsl::Result;

namespace
{

// In each kind of work.
char const * const KILLS = "20";

/// A thread that does what the test says.
class OpenThread : public tsl::Thread
{
public:
    explicit OpenThread(std::function<void()> fWork = [] {}) : m_fWork(std::move(fWork)) {}
    ~OpenThread() override
    {
        while (Kill(1).GetErrorCode() == tsl::ERR::eTimeout)
        {
        }
    }

private:
    void Process() override { m_fWork(); }

    std::function<void()> m_fWork;
};

bool RunsToItsEnd(OpenThread & oThread)
{
    return oThread.Run().IsOk() && WaitUntil([&] { return !oThread.IsRunning(); });
}

/// "running exit code", and whether there is an id.
std::string GetState(tsl::Thread const & oThread)
{
    return std::string(oThread.IsRunning() ? "running " : "still ") + std::to_string(oThread.GetExitCode())
           + (oThread.GetThreadId() ? " id" : " -");
}

/// Tests that end threads from outside.
class ForcedThreadEnd : public testing::Test
{
    void SetUp() override
    {
        if (std::string_view(TESSEL_SANITIZE).find("thread") != std::string_view::npos)
            GTEST_SKIP() << "the sanitizer puts signals off and keeps account of the end of each thread";
    }
};

} // namespace

TEST(ThreadRun, GoesThroughItsStates)
{
    std::promise<void> oGo;
    std::shared_future<void> const oGone = oGo.get_future().share();
    std::atomic<unsigned long> iId{0};
    OpenThread oThread(
        [&]
        {
            iId = tsl::OS::GetThreadId();
            oGone.wait();
        });
    EXPECT_EQ(GetState(oThread), "still -1 -");
    EXPECT_TRUE(oThread.Kill(3).IsOk());

    ASSERT_TRUE(oThread.Run().IsOk());
    unsigned long const iFirstId = oThread.GetThreadId();
    EXPECT_EQ(GetState(oThread), "running 259 id");
    EXPECT_EQ(Tell(oThread.Run()), "3 Cannot start new thread. There is still one running.");

    oGo.set_value();
    ASSERT_TRUE(WaitUntil([&] { return !oThread.IsRunning(); }));
    EXPECT_EQ(iId, iFirstId);
    EXPECT_TRUE(oThread.Kill(3).IsOk()) << "it has ended";
    EXPECT_EQ(GetState(oThread), "still 0 id");
    EXPECT_EQ(oThread.GetThreadId(), iFirstId);

    ASSERT_TRUE(RunsToItsEnd(oThread));
    EXPECT_EQ(oThread.GetThreadId(), iId);
}

TEST(ThreadRun, EndsInNoKillOfItsOwn)
{
    OpenThread * pThread = nullptr;
    Result oResult;
    OpenThread oThread([&] { oResult = pThread->Kill(1); });
    pThread = &oThread;
    ASSERT_TRUE(RunsToItsEnd(oThread));
    EXPECT_EQ(oResult.GetErrorCode(), 3);
    EXPECT_EQ(GetState(oThread), "still 0 id");
}

TEST_F(ForcedThreadEnd, OfTheObjectMayComeOnItsOwnThread)
{
    std::promise<unsigned long> oDeleted;
    std::future<unsigned long> oId = oDeleted.get_future();
    OpenThread * pThread = nullptr;
    pThread = new OpenThread(
        [&]
        {
            std::promise<unsigned long> & oEnd = oDeleted;
            delete pThread;
            oEnd.set_value(tsl::OS::GetThreadId());
        });
    ASSERT_TRUE(pThread->Run().IsOk());
    ASSERT_EQ(oId.wait_for(std::chrono::seconds(60)), std::future_status::ready);
    std::string const sThread = "/proc/self/task/" + std::to_string(oId.get());
    EXPECT_TRUE(WaitUntil([&] { return !std::filesystem::exists(sThread); }));
}

TEST_F(ForcedThreadEnd, LeavesAllThatTheThreadsShareInOrder)
{
    // What killed threads have allocated is lost.
    TestProgram oProgram("ThreadKills");
    oProgram.SetEnvironment("ASAN_OPTIONS", "detect_leaks=0");
    ProgramOutcome const oOutcome = oProgram.Run({KILLS}, std::chrono::minutes(4));
    EXPECT_FALSE(oOutcome.bTimedOut);
    EXPECT_EQ(oOutcome.iExitCode, 0) << oOutcome.sErrors;
    EXPECT_TRUE(oOutcome.sOutput.ends_with("\nok\n")) << oOutcome.sOutput;

    std::istringstream oLog(ReadLog(oProgram));
    int iLines = 0;
    for (std::string sLine; std::getline(oLog, sLine);)
        if (sLine == "T P DEB Kill a line that has to be whole")
            ++iLines;
        else
            ASSERT_TRUE(std::regex_match(sLine, std::regex("(T|\\d\\d\\..*) ?P? ?ERR.*|History 0: .*")))
                << sLine;
    EXPECT_GT(iLines, 1);
}

TEST_F(ForcedThreadEnd, IsRefusedInTimeWhereItWouldDoHarm)
{
    // What each thread does, and what is said of it.
    std::string const sRefused = "11 in time. Thread has not ended within N ms. ";
    std::string const sRuntime = sRefused + "It is in a runtime library, or was called back by one.\n";
    EXPECT_EQ(TestProgram("ThreadKills").Run({"refusals"}).sOutput,
        "signals: " + sRefused
            + "It does not respond: it blocks all signals, or gets no time of a processor.\n"
            + "lock: " + sRefused + "It holds a lock of the library.\n" + "loader: " + sRuntime
            + "called back: " + sRuntime + "priority: " + sRuntime + "stream: " + sRuntime + "ok\n");
}

TEST_F(ForcedThreadEnd, FindsItsWayWithoutTimersAndTheFirstSignal)
{
    EXPECT_EQ(TestProgram("ThreadKills").Run({"signals"}).sOutput, "ok\n");
}

TEST_F(ForcedThreadEnd, IsTracedLikeTheRest)
{
    TestProgram oProgram("ThreadKills");
    oProgram.SetEnvironment("ASAN_OPTIONS", "detect_leaks=0");
    oProgram.WriteFile("ThreadKills.ini", "[Debug]\nEnable=1\n[Debug/Switch]\nThread=1\n");
    EXPECT_EQ(oProgram.Run({"trace"}).sOutput, "ok\n");
    std::string sLog = ReadLog(oProgram);
    sLog = std::regex_replace(sLog, std::regex("((ThreadId|TheadId)=|Thread |id )\\d+"), "$1N");
    sLog = std::regex_replace(sLog, std::regex("=0x[0-9a-f]+"), "=H");
    for (std::string const sText : {"DEB Thread New thread created. ThreadId=N, handle=H\n",
             "DEB Thread Thread N, handle=H has terminated.\n",
             "DEB Thread Thread N, handle=H is still active.\n",
             "DEB Thread Thread with id N successfully killed\n", "DEB Thread Cannot kill thread id N\n",
             "DEB Thread ThreadFunction started. TheadId=N\n",
             "DEB Thread ThreadFunction finished successfull. TheadId=N\n",
             "DEB Thread ThreadFunction finished with ERROR. TheadId=N\n", "thrown",
             "Unhandeled exception in ThreadFunctionProcessor traped. Thread will terminate."})
        EXPECT_NE(sLog.find(sText), std::string::npos) << sText << "in " << sLog;
}

TEST_F(ForcedThreadEnd, ComesWithTheAssignmentOfAnotherThread)
{
    OpenThread oThread(
        []
        {
            for (;;)
                tsl::OS::Sleep(1000);
        });
    ASSERT_TRUE(oThread.Run().IsOk());
    static_cast<tsl::Thread &>(oThread) = OpenThread();
    EXPECT_EQ(GetState(oThread), "still -1 -");
}
