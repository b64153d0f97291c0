#include "AssertionTest.h"
#include "NoMoreThreads.h"
#include "ProcessTest.h"
#include "TestMachine.h"
#include "TestMessages.h"

using namespace tsltest;
using tsl::Message;
using tsl::Task;
using tsl::TaskContextThread;

namespace
{

/// The number that the machine has sent, waited for, with a look at the context before; -1 if none comes.
template<class Look>
int ReadNumber(tsl::TaskContext & oContext, Look const & fLook)
{
    std::unique_ptr<Message> pMessage;
    WaitUntil(
        [&]
        {
            fLook();
            pMessage.reset(oContext.ReadMessage());
            return pMessage != nullptr;
        });
    return pMessage ? dynamic_cast<NumberMessage const &>(*pMessage).iNumber : -1;
}

int ReadNumber(tsl::TaskContext & oContext)
{
    return ReadNumber(oContext, [] {});
}

/// Starts steps until one of them answers, since the last one may just be ending.
int StepAndRead(tsl::TaskContext & oContext)
{
    return ReadNumber(oContext, [&] { oContext.Process(); });
}

/// The failures that reach the global bus while it lives, as "code text <- code of the cause".
class Failures
{
public:
    Failures()
        : m_oProcessor(
            [this](Message const & oMessage, tsl::Result &)
            {
                tsl::Result const & oResult = dynamic_cast<tsl::ResultMessage const &>(oMessage).GetResult();
                tsl::ValueString sFailure("");
                sFailure << oResult.GetErrorCode() << ' ' << oResult.GetText();
                if (oResult.GetHistorySize() > 0)
                    sFailure << " <- " << oResult.GetHistory(0).GetErrorCode();
                vFailures.push_back(sFailure.s_str());
            })
    {
        EXPECT_TRUE(tsl::Support::GetAppDisp()
                        .Register(m_oProcessor, {GetTypeOf(tsl::ResultMessage::GetStaticClassDesc())})
                        .IsOk());
    }
    ~Failures() { tsl::Support::GetAppDisp().Unregister(m_oProcessor); }
    Failures(Failures const &) = delete;
    Failures & operator=(Failures const &) = delete;

    std::vector<std::string> vFailures;

private:
    TestProcessor m_oProcessor;
};

} // namespace

TEST(TaskContextThread, RunsEachStepOnAThreadOfItsOwn)
{
    std::atomic<int> iSteps{0};
    std::atomic<unsigned long> iThreadId{0};
    TaskContextThread oContext(new OneTaskMachine(
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
    EXPECT_EQ(oFailures.vFailures,
        std::vector<std::string>{
            "6 Unhandeled exception in ThreadFunctionProcessor traped. Thread will terminate. <- 77"});
}

TEST(TaskContextThread, FailsIfNoThreadCanBeStarted)
{
    TaskContextThread oContext(new OneTaskMachine({}));
    NoMoreThreads const oScope;
    Failures const oFailures;
    EXPECT_TRUE(Asserts("false", "Cannot recover from previous error.", [&] { oContext.Process(); }));
    ASSERT_EQ(oFailures.vFailures.size(), 2u);
    EXPECT_EQ(oFailures.vFailures[0], "6 Cannot start a thread that processes the statemachine. <- 10");
}

// Messages from four threads; some of the machines end in the middle of a step.
TEST(TaskContextThread, ServesManyMachines)
{
    constexpr int iMachines = 10'000;
    constexpr int iSenders = 4;
    constexpr int iAll = (1 << iSenders) - 1;
    // What a killed thread had allocated is a leak to a sanitizer.
    bool const bKill = *TESSEL_SANITIZE == '\0';

    for (int i = 0; i < iMachines; ++i)
    {
        TaskContextThread oContext(new OneTaskMachine(
            [](OpenTask & oTask)
            {
                int iSum = 0;
                for (int iSender = 0; iSender < iSenders; ++iSender)
                {
                    // In slices of 1 ms; a longer one would be slept to its end.
                    std::unique_ptr<Message> pMessage;
                    while (!pMessage)
                        pMessage.reset(oTask.Receive(1));
                    iSum += dynamic_cast<NumberMessage const &>(*pMessage).iNumber;
                }
                oTask.Send(NumberMessage(iSum));
                return Task::TR_REMAIN;
            }));
        RunOnThreads(iSenders + 1,
            [&](int iThread)
            {
                if (iThread == iSenders)
                    oContext.Process();
                else
                    oContext.WriteMessage(NumberMessage(1 << iThread));
            });
        bool const bAwaitStep = !bKill || i % 10 == 0;
        ASSERT_EQ(bAwaitStep ? ReadNumber(oContext) : iAll, iAll);
    }
}
