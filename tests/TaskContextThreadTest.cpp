#include "TestMachine.h"
#include "TestPrelude.h"

#include <tesselkit/MessageRecorder.h>

using namespace tsltest;
using tsl::Message;
using tsl::Task;
using tsl::TaskContextThread;

namespace
{

/// The number that the machine has sent, waited for; -1 if none comes.
int ReadNumber(tsl::TaskContext & oContext)
{
    std::unique_ptr<Message> pMessage;
    WaitUntil([&] { return pMessage.reset(oContext.ReadMessage()), pMessage != nullptr; });
    return pMessage ? dynamic_cast<NumberMessage const &>(*pMessage).iNumber : -1;
}

/// The failures that have reached the bus.
std::string TellAll(tsl::MessageRecorder & oRecorder)
{
    std::string sFailures;
    for (tsl::Result const & oResult : oRecorder.Take().GetResults())
        sFailures += Tell(oResult) + '\n';
    return sFailures;
}

} // namespace

TEST(TaskContextThread, RunsEachStepOnAThreadOfItsOwnAlsoAfterAnException)
{
    tsl::MessageRecorder oRecorder;
    std::atomic<int> iSteps{0};
    std::atomic<unsigned long> iThreadId{0};
    TaskContextThread oContext(new OneTaskMachine(
        [&](OpenTask & oTask)
        {
            iThreadId = tsl::OS::GetThreadId();
            oTask.Send(NumberMessage(++iSteps));
            std::unique_ptr<Message> const pGo(oTask.Receive(60'000));
            oTask.Wait(1, true);
            oTask.Send(NumberMessage(pGo ? 10 : -10));
            if (iSteps == 1)
                throw tsl::Exception(77, "thrown", "file", 1);
            return Task::TR_REMAIN;
        }));
    oContext.Process();
    EXPECT_EQ(ReadNumber(oContext), 1);
    oContext.Process();
    EXPECT_EQ(iSteps, 1) << "while a step runs, none begins";
    EXPECT_NE(iThreadId, tsl::OS::GetThreadId());
    oContext.WriteMessage(NumberMessage());
    EXPECT_EQ(ReadNumber(oContext), 10);

    // The first step may just be ending.
    for (bool bSecond = false; !bSecond; bSecond = iSteps == 2)
        oContext.Process();
    EXPECT_EQ(ReadNumber(oContext), 2);
    oContext.WriteMessage(NumberMessage());
    EXPECT_EQ(ReadNumber(oContext), 10) << "a step that is ended is not joined by a sanitizer";
    EXPECT_EQ(TellAll(oRecorder),
        "6 Unhandeled exception in ThreadFunctionProcessor traped. Thread will terminate. <- 77 thrown\n");
}

TEST(TaskContextThread, StartsOneStepForCallersAtOnce)
{
    for (int i = 0; i < 300; ++i)
    {
        int iSteps = 0;
        TaskContextThread oContext(new OneTaskMachine(
            [&](OpenTask & oTask)
            {
                // It lasts until all have called. A longer slice would be slept to its end.
                while (!std::unique_ptr<Message>(oTask.Receive(1)))
                {
                }
                oTask.Send(NumberMessage(++iSteps));
                return Task::TR_REMAIN;
            }));
        RunOnThreads(2, [&](int) { EXPECT_NO_THROW(oContext.Process()); });
        oContext.WriteMessage(NumberMessage());
        ASSERT_EQ(ReadNumber(oContext), 1);
    }
}

TEST(TaskContextThread, FailsAsLongAsNoThreadCanBeStarted)
{
    std::atomic<int> iSteps{0};
    TaskContextThread oContext(new OneTaskMachine(Remaining([&](auto &) { ++iSteps; })));
    {
        NoMoreThreads const oScope;
        tsl::MessageRecorder oRecorder;
        EXPECT_TRUE(Asserts("false", "Cannot recover from previous error.", [&] { oContext.Process(); }));
        std::string const sCause =
            "10 Error while starting new thread. <- " + Tell(tsl::OS::FormatError(EAGAIN));
        std::string const sFailures = TellAll(oRecorder);
        EXPECT_TRUE(sFailures.starts_with(
            "6 Cannot start a thread that processes the statemachine. <- " + sCause + "\n6 XAssertion"))
            << sFailures;
    }
    oContext.Process();
    EXPECT_TRUE(WaitUntil([&] { return iSteps == 1; }));
}

// Messages from four threads; some of the machines end in the middle of a step.
TEST(TaskContextThread, ServesManyMachines)
{
    // What a killed thread had allocated is a leak to a sanitizer.
    bool const bKill = *TESSEL_SANITIZE == '\0';
    for (int i = 0; i < 1000; ++i)
    {
        TaskContextThread oContext(new OneTaskMachine(
            [](OpenTask & oTask)
            {
                int iSum = 0;
                while (iSum < 15)
                    if (std::unique_ptr<Message> const pMessage{oTask.Receive(1)})
                        iSum += dynamic_cast<NumberMessage const &>(*pMessage).iNumber;
                oTask.Send(NumberMessage(iSum));
                return Task::TR_REMAIN;
            }));
        RunOnThreads(5, [&](int iThread)
            { iThread == 4 ? oContext.Process() : oContext.WriteMessage(NumberMessage(1 << iThread)); });
        bool const bAwaitStep = !bKill || i % 10 == 0;
        ASSERT_EQ(bAwaitStep ? ReadNumber(oContext) : 15, 15);
    }
}
