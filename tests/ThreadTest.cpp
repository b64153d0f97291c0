#include "OpenThread.h"
#include "TestPrelude.h"

#include <regex>

using namespace tsltest;
using tsl::Result;

namespace
{

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
        if (std::string_view(TESSEL_SANITIZE) == "thread")
            GTEST_SKIP() << "the sanitizer puts signals off and keeps account of the end of each thread";
    }
};

} // namespace

TEST(ThreadRun, GoesThroughItsStates)
{
    std::latch oGo(1);
    std::atomic<unsigned long> iId{0};
    OpenThread oThread(
        [&]
        {
            iId = tsl::OS::GetThreadId();
            oGo.wait();
        });
    EXPECT_EQ(GetState(oThread), "still -1 -");

    ASSERT_TRUE(oThread.Run().IsOk());
    unsigned long const iFirstId = oThread.GetThreadId();
    EXPECT_EQ(GetState(oThread), "running 259 id");
    EXPECT_EQ(Tell(oThread.Run()), "3 Cannot start new thread. There is still one running.");

    oGo.count_down();
    ASSERT_TRUE(WaitUntil([&] { return !oThread.IsRunning(); }));
    EXPECT_EQ(iId, iFirstId);
    EXPECT_EQ(GetState(oThread), "still 0 id");
    ASSERT_TRUE(RunsToItsEnd(oThread));
    EXPECT_EQ(oThread.GetThreadId(), iId);

    ASSERT_TRUE(oThread.Run().IsOk());
    static_cast<tsl::Thread &>(oThread) = OpenThread();
    EXPECT_EQ(GetState(oThread), "still -1 -") << "an assignment ends it";
}

TEST_F(ForcedThreadEnd, OfTheObjectMayComeOnItsOwnThread)
{
    std::atomic<unsigned long> iId{0};
    OpenThread * pThread = nullptr;
    pThread = new OpenThread(
        [&]
        {
            std::atomic<unsigned long> & iOut = iId; // what is captured goes with the object
            delete pThread;
            iOut = tsl::OS::GetThreadId();
        });
    ASSERT_TRUE(pThread->Run().IsOk());
    ASSERT_TRUE(WaitUntil([&] { return iId != 0; }));
    std::string const sThread = "/proc/self/task/" + std::to_string(iId);
    EXPECT_TRUE(WaitUntil([&] { return !std::filesystem::exists(sThread); }));
}

TEST_F(ForcedThreadEnd, LeavesAllThatTheThreadsShareInOrder)
{
    // What killed threads have allocated is lost.
    TestProgram oProgram("ThreadKills");
    oProgram.SetEnvironment("ASAN_OPTIONS", "detect_leaks=0");
    ProgramOutcome const oOutcome = oProgram.Run({"20"}, std::chrono::minutes(4));
    EXPECT_FALSE(oOutcome.bTimedOut);
    EXPECT_EQ(oOutcome.iExitCode, 0) << oOutcome.sErrors;
    EXPECT_EQ(oOutcome.sOutput, "ok\n");

    std::istringstream oLog(oProgram.ReadLog());
    int iLines = 0;
    for (std::string sLine; std::getline(oLog, sLine);)
        if (sLine == "T P DEB Kill a whole line")
            ++iLines;
        else
            ASSERT_TRUE(std::regex_match(sLine, std::regex("(T|\\d\\d\\..*) ?P? ?ERR.*|History 0: .*")))
                << sLine;
    EXPECT_GT(iLines, 1);
}

TEST_F(ForcedThreadEnd, IsRefusedInTimeWhereItWouldDoHarm)
{
    std::string const sRuntime = "It is in a runtime library, or was called back by one.";
    Rows<std::string, std::string> aRows = {
        {"signals", "It does not respond: it blocks all signals, or gets no time of a processor."},
        {"lock", "It holds a lock of the library."},
        {"loader", sRuntime},
        {"called back", sRuntime},
        {"priority", sRuntime},
        {"stream", sRuntime},
    };
    std::string sExpected;
    for (auto const & [sCase, sReason] : aRows)
        sExpected += sCase + ": 11 in time. Thread has not ended within N ms. " + sReason + '\n';
    EXPECT_EQ(TestProgram("ThreadKills").Run({"refusals"}).sOutput, sExpected + "ok\n");
    EXPECT_EQ(TestProgram("ThreadKills").Run({"signals"}).sOutput, "ok\n")
        << "without timers and first signal";
}

TEST_F(ForcedThreadEnd, IsTracedLikeTheRest)
{
    TestProgram oProgram("ThreadKills");
    oProgram.SetEnvironment("ASAN_OPTIONS", "detect_leaks=0");
    oProgram.WriteFile("ThreadKills.ini", "[Debug]\nEnable=1\n[Debug/Switch]\nThread=1\n");
    EXPECT_EQ(oProgram.Run({"trace"}).sOutput, "ok\n");
    std::string sLog = oProgram.ReadLog();
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
        EXPECT_TRUE(Contains(sLog, sText));
}
