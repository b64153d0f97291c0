#include "AssertionTest.h"
#include "NoMoreThreads.h"
#include "ProcessTest.h"
#include "TestMachine.h"
#include "TestMessages.h"

#include <tessel/GlobalMessageDispatcher.h>
#include <tessel/OS.h>
#include <tessel/ResultMessage.h>
#include <tessel/Support.h>
#include <tessel/TaskContextThread.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

using namespace tsltest;
using tsl::Message;
using tsl::Task;
using tsl::TaskContextThread;

namespace
{

class OpenContextThread : public TaskContextThread
{
public:
    using TaskContextThread::ProcessBase;
    using TaskContextThread::TaskContextThread;
};

/// The number that the machine has sent, waited for; -1 if none comes.
int ReadNumber(tsl::TaskContext & oContext)
{
    auto const oLimit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (std::chrono::steady_clock::now() < oLimit)
    {
        if (std::unique_ptr<Message> const pMessage{oContext.ReadMessage()})
            return dynamic_cast<NumberMessage const &>(*pMessage).iNumber;
        std::this_thread::yield();
    }
    return -1;
}

/// Starts steps until one of them answers, since the last one may just be ending.
int StepAndRead(tsl::TaskContext & oContext)
{
    for (int i = 0; i < 60'000; ++i)
    {
        oContext.Process();
        if (std::unique_ptr<Message> const pMessage{oContext.ReadMessage()})
            return dynamic_cast<NumberMessage const &>(*pMessage).iNumber;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return -1;
}

/// The failures that reach the global bus while it lives, as "code text".
class Failures
{
public:
    Failures()
        : m_oProcessor(
            [this](Message const & oMessage, tsl::Result &)
            {
                tsl::Result const & oResult = dynamic_cast<tsl::ResultMessage const &>(oMessage).GetResult();
                sLast = std::to_string(oResult.GetErrorCode()) + ' ' + oResult.GetText().s_str() + " <- "
                        + std::to_string(oResult.GetHistory(0).GetErrorCode());
                ++iCount;
            })
    {
        EXPECT_TRUE(tsl::Support::GetAppDisp()
                        .Register(m_oProcessor, {GetTypeOf(tsl::ResultMessage::GetStaticClassDesc())})
                        .IsOk());
    }
    ~Failures() { tsl::Support::GetAppDisp().Unregister(m_oProcessor); }
    Failures(Failures const &) = delete;
    Failures & operator=(Failures const &) = delete;

    std::atomic<int> iCount{0};
    std::string sLast;

private:
    TestProcessor m_oProcessor;
};

} // namespace

TEST(TaskContextThread, RunsEachStepOnAThreadOfItsOwn)
{
    std::atomic<int> iSteps{0};
    std::atomic<unsigned long> iThreadId{0};
    OpenContextThread oContext(new OneTaskMachine(
        [&](OpenTask & oTask)
        {
            ++iSteps;
            iThreadId = tsl::OS::GetThreadId();
            oTask.Send(NumberMessage(1));
            std::unique_ptr<Message> const pGo(oTask.Receive(60'000));
            oTask.Wait(1, true);
            oTask.Send(NumberMessage(pGo ? 2 : -2));
            return Task::TR_REMAIN;
        }));
    oContext.Process();
    EXPECT_EQ(ReadNumber(oContext), 1);
    oContext.Process();
    oContext.Process();
    oContext.WriteMessage(NumberMessage());
    EXPECT_EQ(ReadNumber(oContext), 2);
    EXPECT_EQ(iSteps, 1) << "while a step runs, none begins";
    EXPECT_NE(iThreadId, tsl::OS::GetThreadId());

    EXPECT_EQ(StepAndRead(oContext), 1);
    oContext.WriteMessage(NumberMessage());
    EXPECT_EQ(ReadNumber(oContext), 2);
    EXPECT_EQ(iSteps, 2);
}

TEST(TaskContextThread, CanStepOnTheCallersThread)
{
    unsigned long iThreadId = 0;
    OpenContextThread oContext(new OneTaskMachine(
        [&](OpenTask &)
        {
            iThreadId = tsl::OS::GetThreadId();
            return Task::TR_REMAIN;
        }));
    oContext.ProcessBase();
    EXPECT_EQ(iThreadId, tsl::OS::GetThreadId());
}

TEST(TaskContextThread, GoesOnAfterAnException)
{
    Failures const oFailures;
    bool bThrow = true;
    TaskContextThread oContext(new OneTaskMachine(
        [&](OpenTask & oTask)
        {
            if (std::exchange(bThrow, false))
                throw tsl::Exception(77, "thrown", "file", 1);
            oTask.Send(NumberMessage(5));
            return Task::TR_REMAIN;
        }));
    EXPECT_EQ(StepAndRead(oContext), 5);
    EXPECT_EQ(oFailures.iCount, 1);
    EXPECT_EQ(oFailures.sLast,
        "6 Unhandeled exception in ThreadFunctionProcessor traped. Thread will terminate. <- 77");
}

TEST(TaskContextThread, FailsIfNoThreadCanBeStarted)
{
    TaskContextThread oContext(new OneTaskMachine({}));
    NoMoreThreads const oScope;
    std::vector<std::string> vReports;
    TestProcessor oProcessor(
        [&](Message const & oMessage, tsl::Result &) {
            vReports.push_back(
                dynamic_cast<tsl::ResultMessage const &>(oMessage).GetResult().GetText().s_str());
        });
    ASSERT_TRUE(tsl::Support::GetAppDisp()
                    .Register(oProcessor, {GetTypeOf(tsl::ResultMessage::GetStaticClassDesc())})
                    .IsOk());
    EXPECT_TRUE(Asserts("false", "Cannot recover from previous error.", [&] { oContext.Process(); }));
    tsl::Support::GetAppDisp().Unregister(oProcessor);
    ASSERT_EQ(vReports.size(), 2u);
    EXPECT_EQ(vReports[0], "Cannot start a thread that processes the statemachine.");
}

// Messages from four threads; some of the machines end in the middle of a step.
TEST(TaskContextThread, ServesManyMachines)
{
    constexpr int iMachines = 1000;
    constexpr int iSenders = 4;
    constexpr int iAll = (1 << iSenders) - 1;
    bool const bKill = std::string_view(TESSEL_SANITIZE).find("thread") == std::string_view::npos;

    for (int i = 0; i < iMachines; ++i)
    {
        TaskContextThread oContext(new OneTaskMachine(
            [](OpenTask & oTask)
            {
                int iSum = 0;
                for (int iSender = 0; iSender < iSenders; ++iSender)
                {
                    std::unique_ptr<Message> const pMessage(oTask.Receive(60'000));
                    iSum += dynamic_cast<NumberMessage const &>(*pMessage).iNumber;
                }
                oTask.Send(NumberMessage(iSum));
                return Task::TR_REMAIN;
            }));
        std::vector<std::thread> vSenders;
        for (int iSender = 0; iSender < iSenders; ++iSender)
            vSenders.emplace_back([&, iSender] { oContext.WriteMessage(NumberMessage(1 << iSender)); });
        oContext.Process();
        for (std::thread & oSender : vSenders)
            oSender.join();
        bool const bAwaitStep = !bKill || i % 10 == 0;
        ASSERT_EQ(bAwaitStep ? ReadNumber(oContext) : iAll, iAll);
    }
}
