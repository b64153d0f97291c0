#include "NoMoreThreads.h"
#include "ProcessTest.h"

#include <tessel/OS.h>
#include <tessel/Thread.h>
#include <tessel/ValueString.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>

using namespace tsltest;
using tsl::Result;

namespace
{

// Enough for a test that is run often; the program takes any number.
char const * const KILLS = "2000";

/// A thread that does what the test says.
class OpenThread : public tsl::Thread
{
public:
    explicit OpenThread(std::function<void()> fWork = {}) : m_fWork(std::move(fWork)) {}
    ~OpenThread() override { static_cast<void>(Kill(1)); }

private:
    void Process() override
    {
        if (m_fWork)
            m_fWork();
    }

    std::function<void()> m_fWork;
};

/// One whose Process is that of the class.
class BareThread : public tsl::Thread
{
};

template<class Condition>
bool ComesTrue(Condition fCondition)
{
    auto const oLimit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!fCondition())
    {
        if (std::chrono::steady_clock::now() > oLimit)
            return false;
        std::this_thread::yield();
    }
    return true;
}

bool Ends(tsl::Thread const & oThread)
{
    return ComesTrue([&] { return !oThread.IsRunning(); });
}

/// "running exit code", and whether there is an id.
std::string GetState(tsl::Thread const & oThread)
{
    return std::string(oThread.IsRunning() ? "running " : "still ") + std::to_string(oThread.GetExitCode())
           + (oThread.GetThreadId() ? " id" : " -");
}

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
    Result const oSecond = oThread.Run();
    EXPECT_EQ(oSecond.GetErrorCode(), 3);
    EXPECT_EQ(oSecond.GetText().s_str(), "Cannot start new thread. There is still one running.");
    EXPECT_NE(oSecond.GetSourceLine(), 0);

    oGo.set_value();
    ASSERT_TRUE(Ends(oThread));
    EXPECT_EQ(iId, iFirstId);
    EXPECT_TRUE(oThread.Kill(3).IsOk()) << "it has ended";
    EXPECT_EQ(GetState(oThread), "still 0 id");
    EXPECT_EQ(oThread.GetThreadId(), iFirstId);

    ASSERT_TRUE(oThread.Run().IsOk());
    ASSERT_TRUE(Ends(oThread));
    EXPECT_EQ(oThread.GetThreadId(), iId);

    BareThread oBare;
    ASSERT_TRUE(oBare.Run().IsOk());
    ASSERT_TRUE(Ends(oBare));
    EXPECT_EQ(GetState(oBare), "still 0 id");
}

TEST(ThreadRun, TellsWhyNoThreadCanBeStarted)
{
    OpenThread oThread;
    {
        NoMoreThreads const oScope;
        Result const oResult = oThread.Run();
        EXPECT_EQ(oResult.GetErrorCode(), 10);
        EXPECT_EQ(oResult.GetText().s_str(), "Error while starting new thread.");
        ASSERT_EQ(oResult.GetHistorySize(), 1);
        EXPECT_EQ(oResult.GetHistory(0), tsl::OS::FormatError(EAGAIN));
        EXPECT_EQ(GetState(oThread), "still -1 -");
    }
    EXPECT_TRUE(oThread.Run().IsOk());
    EXPECT_TRUE(Ends(oThread));
}

TEST(ThreadKill, IsRefusedToTheThreadItself)
{
    OpenThread * pThread = nullptr;
    Result oResult;
    OpenThread oThread([&] { oResult = pThread->Kill(1); });
    pThread = &oThread;
    ASSERT_TRUE(oThread.Run().IsOk());
    ASSERT_TRUE(Ends(oThread));
    EXPECT_EQ(oResult.GetErrorCode(), 3);
    EXPECT_EQ(GetState(oThread), "still 0 id");
}

TEST(ThreadEnd, OfTheObjectMayComeOnItsOwnThread)
{
    std::promise<void> oDeleted;
    OpenThread * pThread = nullptr;
    pThread = new OpenThread(
        [&]
        {
            std::promise<void> & oEnd = oDeleted;
            delete pThread;
            oEnd.set_value();
        });
    ASSERT_TRUE(pThread->Run().IsOk());
    EXPECT_EQ(oDeleted.get_future().wait_for(std::chrono::seconds(60)), std::future_status::ready);
}

TEST(ThreadKill, LeavesAllThatTheThreadsShareInOrder)
{
    if (std::string_view(TESSEL_SANITIZE).find("thread") != std::string_view::npos)
        GTEST_SKIP() << "the sanitizer puts signals off and keeps account of the end of each thread";

    // What killed threads have allocated is lost.
    TestProgram oProgram("ThreadKills");
    oProgram.SetEnvironment("ASAN_OPTIONS", "detect_leaks=0");
    ProgramOutcome const oOutcome = oProgram.Run({KILLS}, std::chrono::minutes(4));
    EXPECT_FALSE(oOutcome.bTimedOut);
    EXPECT_EQ(oOutcome.iExitCode, 0) << oOutcome.sErrors;
    EXPECT_TRUE(std::regex_search(oOutcome.sOutput, std::regex("^ok"))) << oOutcome.sOutput;

    std::regex const oWhole(R"([0-9.]{10} [0-9:]{8} \d+ \d+ DEB Kill a line that has to be whole)");
    std::istringstream oLog(oProgram.ReadFile("Logfile.txt"));
    int iLines = 0;
    for (std::string sLine; std::getline(oLog, sLine); ++iLines)
        ASSERT_TRUE(std::regex_match(sLine, oWhole)) << sLine;
    EXPECT_GT(iLines, 1);
}

TEST(ThreadKill, ComesWithTheAssignmentOfAnotherThread)
{
    if (std::string_view(TESSEL_SANITIZE).find("thread") != std::string_view::npos)
        GTEST_SKIP() << "as above";

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

TEST(ThreadTrace, TellsOfStartsAndEndsIfItIsSwitchedOn)
{
    if (std::string_view(TESSEL_SANITIZE).find("thread") != std::string_view::npos)
        GTEST_SKIP() << "as above";

    std::string const sTrace = "Thread New thread created. ThreadId=N, handle=H\n"
                               "Thread New thread created. ThreadId=N, handle=H\n"
                               "Thread New thread created. ThreadId=N, handle=H\n"
                               "Thread Thread N, handle=H has terminated.\n"
                               "Thread Thread N, handle=H is still active.\n"
                               "Thread Thread with id N successfully killed\n"
                               "Thread ThreadFunction finished successfull. TheadId=N\n"
                               "Thread ThreadFunction finished with ERROR. TheadId=N\n"
                               "Thread ThreadFunction started. TheadId=N\n"
                               "Thread ThreadFunction started. TheadId=N\n"
                               "Thread ThreadFunction started. TheadId=N\n";
    for (bool const bTrace : {false, true})
    {
        TestProgram const oProgram("ThreadTrace");
        oProgram.WriteFile("ThreadTrace.ini", bTrace ? "[Debug]\nEnable=1\n[Debug/Switch]\nThread=1\n" : "");
        EXPECT_EQ(oProgram.Run().iExitCode, 0);

        // Two threads write, so that the order of some lines is open.
        std::istringstream oLog(oProgram.ReadFile("Logfile.txt"));
        std::multiset<std::string> vTrace;
        std::string sReport;
        std::regex const oLine(R"([0-9.]{10} [0-9:]{8} \d+ \d+ (\w+) (.*))");
        std::smatch oMatch;
        for (std::string sLine; std::getline(oLog, sLine);)
        {
            if (std::regex_match(sLine, oMatch, oLine) && oMatch[1] == "DEB")
                vTrace.insert(
                    std::regex_replace(std::regex_replace(oMatch[2].str(), std::regex("=0x[0-9a-f]+"), "=H"),
                        std::regex("\\b\\d+\\b"), "N"));
            else
                sReport += sLine + '\n';
        }
        std::string sSeen;
        for (std::string const & sLine : vTrace)
            sSeen += sLine + '\n';
        EXPECT_EQ(sSeen, bTrace ? sTrace : "");
        EXPECT_NE(
            sReport.find("Unhandeled exception in ThreadFunctionProcessor traped. Thread will terminate."),
            std::string::npos)
            << sReport;
        EXPECT_NE(sReport.find("thrown"), std::string::npos) << sReport;
    }
}
