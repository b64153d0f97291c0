#include "TestMachine.h"
#include "TestPrelude.h"

#include <regex>

using namespace tsl;
using namespace tsltest;

namespace
{

struct IdleContext : OpenContext
{
    IdleContext() : OpenContext(new OneTaskMachine(nullptr)) {}
};

class EvenFilter : public MessageFilter
{
public:
    bool Match(Message const & oMessage) const override
    {
        return dynamic_cast<NumberMessage const &>(oMessage).iNumber % 2 == 0;
    }
};

/// The number of a message that nobody needs any more, 0 for none.
int TakeNumber(Message * pMessage)
{
    std::unique_ptr<Message> const pOwner(pMessage);
    return pOwner ? dynamic_cast<NumberMessage &>(*pOwner).iNumber : 0;
}

} // namespace

TEST(TaskContextReceive, WaitsInSlicesUntilAMessageComes)
{
    // The time-out, when a message comes (0 for never), all waits, and what is left of the time-out.
    Rows<int, int, std::vector<int>, int> vRows = {
        {250, 0, {100, 100, 50}, 0},
        {0, 0, {}, 0},
        {250, 150, {100, 100}, 50},
        {-1, 300, {100, 100, 100}, -1},
    };
    for (auto const & [iGiven, iTime, vWaits, iLeft] : vRows)
    {
        SCOPED_TRACE(testing::Message() << iGiven << ", " << iTime);
        IdleContext oContext;
        if (iTime > 0)
            oContext.Schedule(iTime, NumberMessage(5));
        int iTimeout = iGiven;
        EXPECT_EQ(TakeNumber(oContext.Receive(iTimeout)), iTime > 0 ? 5 : 0);

        // What is there already comes without a wait.
        oContext.WriteMessage(NumberMessage(6));
        EXPECT_EQ(TakeNumber(oContext.Receive(iTimeout)), 6);
        EXPECT_EQ(oContext.GetWaits(), vWaits);
        EXPECT_EQ(iTimeout, iLeft);
    }
}

TEST(TaskContextReceive, DiscardsWhatTheFilterDoesNotTake)
{
    // The time-out, the messages and when they come, what is received (0 for nothing), when, and what stays in the
    // queue.
    Rows<int, std::vector<std::pair<int, int>>, int, int, int> vRows = {
        {0, {{1, 0}, {2, 0}}, 0, 0, 2},
        {150, {{1, 0}, {3, 0}, {4, 0}, {6, 0}}, 4, 0, 6},
        {150, {{1, 0}, {3, 100}, {2, 150}}, 2, 150, 0},
        {-1, {{1, 0}, {3, 200}, {2, 400}}, 2, 400, 0},
    };
    for (auto const & [iTimeout, vMessages, iReceived, iTime, iNext] : vRows)
    {
        SCOPED_TRACE(testing::Message() << iTimeout << ", received " << iReceived);
        IdleContext oContext;
        for (auto const & [iNumber, iArrival] : vMessages)
            oContext.Schedule(iArrival, NumberMessage(iNumber));
        EXPECT_EQ(TakeNumber(oContext.ReceiveFilter(EvenFilter(), iTimeout)), iReceived);
        EXPECT_EQ(oContext.GetTime(), iTime);
        EXPECT_EQ(TakeNumber(oContext.Receive()), iNext);
    }
}

TEST(TaskContextQueues, JoinTheApplicationAndTheTasks)
{
    class AlertableContext : public OpenContext
    {
    public:
        using OpenContext::OpenContext;
        std::vector<int> vAlertable;

    protected:
        void Wait(int iDuration, bool bAlertable) override
        {
            if (bAlertable)
                vAlertable.push_back(iDuration);
            OpenContext::Wait(iDuration, bAlertable);
        }
    };

    std::string sSeen;
    AlertableContext oContext(new OneTaskMachine(
        [&](OpenTask & oTask)
        {
            sSeen += std::to_string(TakeNumber(oTask.Receive(0))) + " ";
            sSeen += std::to_string(TakeNumber(oTask.ReceiveFilter(EvenFilter(), 1000))) + " ";
            oTask.Wait(7, true);
            oTask.Send(NumberMessage(10));
            oTask.ClearSendBuffer();
            oTask.Send(NumberMessage(11));
            oTask.ClearReveiveBuffer();
            sSeen += std::to_string(TakeNumber(oTask.Receive(30)));
            return Task::TR_REMAIN;
        }));
    for (int const iNumber : {1, 3, 4, 5})
        oContext.WriteMessage(NumberMessage(iNumber));
    oContext.Process();
    EXPECT_EQ(sSeen, "1 4 0");
    EXPECT_EQ(oContext.GetWaits(), (std::vector{7, 30}));
    EXPECT_EQ(oContext.vAlertable, std::vector{7});
    EXPECT_EQ(TakeNumber(oContext.ReadMessage()), 11);
    EXPECT_EQ(oContext.ReadMessage(), nullptr);
}

TEST(TaskVariables, AreKeptByNameAndKind)
{
    IdleContext oContext;
    EXPECT_EQ(oContext.GetVar("x", 5), 5);
    oContext.SetVar("x", 1);
    EXPECT_EQ(oContext.GetVar("x", ValueString("none")), "none");
    oContext.SetVar("x", "text");
    oContext.SetVar("x", 2);
    EXPECT_EQ(oContext.GetVar("x", 0), 2);
    EXPECT_EQ(oContext.GetVar("x", ValueString()), "text");
    oContext.SetVar("x", ValueString::Null());
    EXPECT_TRUE(oContext.GetVar("x", "none").IsNull());

    ValueString const & sNull = ValueString::Null();
    char const * const sInfo = "Invalid operation. ValueString is NULL";
    EXPECT_TRUE(AllAssert("!m_bNull && !Source.m_bNull", sInfo,
        {[&] { oContext.SetVar(sNull, 1); }, [&] { oContext.SetVar(sNull, "t"); },
            [&] { oContext.GetVar(sNull, 1); }, [&] { oContext.GetVar(sNull, "t"); }}));
    EXPECT_TRUE(Asserts("!s.IsNull()", sInfo, [&] { oContext.SetLocalVar(TaskStack(), sNull, 1); }));
}

TEST(TaskVariables, OfAPlaceAreFoundThereAlone)
{
    IdleContext oContext;
    TaskStack oStack;
    for (int const iId : {7, 3, 12})
        oStack.Push(iId);
    ValueString sKey("old");
    oContext.FormatTaskIDStack(oStack, "x", sKey);
    EXPECT_EQ(sKey, "12.3.7.x");

    TaskStack oOther = oStack;
    oOther[0] = 8;
    for (int const i : {-1, 3})
        EXPECT_TRUE(Asserts("iIndex >= 0 && iIndex < GetSize()",
            "TaskStack hat kein Element " + std::to_string(i), [&] { oStack[i]; }));
    oContext.SetLocalVar(oStack, "x", 1);
    EXPECT_EQ(oContext.GetLocalVar(oStack, "x", 0), 1);
    EXPECT_EQ(oContext.GetLocalVar(oOther, "x", 0), 0);
    EXPECT_EQ(oContext.GetVar("12.3.7.x", 0), 0) << "global ones are others";
}

TEST(TaskVariables, OutliveTheTask)
{
    // In one step from the first task to the second one and back to a new object of the first one.
    std::string sLocal;
    OpenContext oContext(new OneTaskMachine(
        [&](OpenTask & oTask)
        {
            oTask.SetVar("count", oTask.GetVar("count", 0) + 1);
            oTask.SetVar("text", oTask.GetVar("text", "") + "g");
            oTask.SetLocalVar("count", oTask.GetLocalVar("count", 10) + 1);
            oTask.SetLocalVar("text", oTask.GetLocalVar("text", "") + "l");
            sLocal += std::to_string(oTask.GetLocalVar("count", 0)) + oTask.GetLocalVar("text", "").s_str();
            return oTask.GetVar("text", "") == "ggg" ? +Task::TR_REMAIN : 0;
        }));
    oContext.Process();
    EXPECT_EQ(sLocal, "11l11l12ll");
    EXPECT_EQ(oContext.GetVar("count", 0), 3);
}

TEST(TaskContextCopies, ShareTheMachineAndAllElse)
{
    int iSteps = 0;
    auto pContext = std::make_unique<OpenContext>(new OneTaskMachine(
        [&](OpenTask & oTask)
        {
            ++iSteps;
            EXPECT_TRUE(Asserts("!m->pProcessor->IsInStep()", "The machine of this context is running.",
                [&] { oTask.GetContext() = TaskContext(new OneTaskMachine(nullptr)); }));
            return Task::TR_REMAIN;
        }));
    pContext->SetVar("x", 1);
    OpenContext oCopy(*pContext);
    IdleContext oAssigned;
    static_cast<TaskContext &>(oAssigned) = *pContext;
    pContext.reset();
    oCopy.Process();
    oAssigned.Process();
    EXPECT_EQ(iSteps, 2);
    EXPECT_EQ(oAssigned.GetVar("x", 0), 1);
}

TEST(Simulation, IsSetByTheNameOfATask)
{
    constexpr int eSet = TaskContextMessage::eActionSet;
    constexpr int eQuery = TaskContextMessage::eActionQuery;
    // Action, task, enabled, mode; the reply, and whether "task" is simulated then.
    Rows<int, char const *, bool, int, std::string, bool> vRows = {
        {eQuery, "task", true, 9, "ActionId='1'; TaskName='task'; Mode='0'; Enabled='0'", false},
        {eSet, "task", true, 3, "", true},
        {eSet, "task", true, -4, "", true},
        {eQuery, "task", false, 0, "ActionId='1'; TaskName='task'; Mode='-4'; Enabled='1'", true},
        {eSet, "task", false, -4, "", false},
    };
    bool bSimulated = false;
    String sName("task");
    OpenContext oContext(new OneTaskMachine(
        [&](OpenTask & oTask)
        {
            oTask.SetTaskName(sName);
            bSimulated = oTask.GetSimulationMode(0);
            return Task::TR_REMAIN;
        }));
    for (auto const & [iAction, sTask, bEnabled, iMode, sReply, bExpected] : vRows)
    {
        SCOPED_TRACE(testing::Message() << iAction << ' ' << sTask << ' ' << bEnabled << ' ' << iMode);
        TaskContextMessage oMessage;
        oMessage.SetActionId(iAction);
        oMessage.SetTaskName(sTask);
        oMessage.SetEnabled(bEnabled);
        oMessage.SetMode(iMode);
        oContext.WriteMessage(oMessage);
        String sText;
        if (std::unique_ptr<Message> const pReply{oContext.ReadMessage()})
            pReply->AddAsString(sText);
        EXPECT_EQ(sText.s_str(), sReply);
        EXPECT_EQ(oContext.Receive(), nullptr) << "no task sees it";
        oContext.Process();
        EXPECT_EQ(bSimulated, bExpected);
    }
    int iMode = 7;
    EXPECT_FALSE(oContext.GetSimulationMode("task", iMode));
    EXPECT_EQ(iMode, 7);
}

TEST(TaskTrace, TellsEveryStepAndMessageIfItIsSwitchedOn)
{
    TestProgram const oProgram("Reporter");
    oProgram.WriteFile("Reporter.ini", "[Debug]\nEnable=1\n[Debug/Switch]\nTask=1\nTaskContext=1\nPipe=1\n");
    oProgram.Run({"machine"});
    std::string const sExpected = R"(
Pipe GUI->TASK Send note 1; New size=1
Pipe GUI->TASK Send note 2; New size=2
Pipe GUI->TASK Send note 3; New size=3
Task Task 'machine' starts DoProcess 
Task Task 'task' starts DoTaskEntry 
Task Task 'task' starts DoProcess 
TaskContext Receive
Pipe GUI->TASK Received note 1; New size=2
Task Task 'task' received message note 1
TaskContext ReceiveFilter. Wait 0 ms for specified message.
TaskContext Receive
Pipe GUI->TASK Received note 2; New size=1
TaskContext ReceiveFilter. Discard message note 2
TaskContext ReceiveFilter. Timeout.
TaskContext ReceiveFilter. Wait -1(INFINITE) for specified message.
TaskContext Receive
Pipe GUI->TASK Received note 3; New size=0
TaskContext ReceiveFilter. Received message note 3
Task Task 'task' sends message note 9
Pipe TASK->GUI Send note 9; New size=1
Task Task 'task' ClearSendBuffer
Pipe TASK->GUI Clear
Task Task 'task' ClearReveiveBuffer
Pipe GUI->TASK Clear
Task Task 'task' starts DoTaskExit 
Pipe TASK->GUI Received nothing.
TaskContext Simulation enabled for task task to mode 3
TaskContext Simulation disabled for task task
Pipe GUI->TASK Clear
Pipe TASK->GUI Clear
)";
    EXPECT_EQ('\n' + std::regex_replace(oProgram.ReadLog(), std::regex("T P DEB "), ""), sExpected);
}
