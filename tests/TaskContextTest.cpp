#include "AssertionTest.h"
#include "ProcessTest.h"
#include "TestMachine.h"
#include "TestMessages.h"

using namespace tsl;
using namespace tsltest;

namespace
{

/// A context around a machine that does nothing.
struct IdleContext : OpenContext
{
    IdleContext() : OpenContext(new OneTaskMachine(nullptr)) {}
};

/// Takes even numbers.
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

TaskContextMessage MakeContextMessage(
    int iAction, char const * sTaskName, bool bEnabled = false, int iMode = 0)
{
    TaskContextMessage oMessage;
    oMessage.SetActionId(iAction);
    oMessage.SetTaskName(sTaskName);
    oMessage.SetEnabled(bEnabled);
    oMessage.SetMode(iMode);
    return oMessage;
}

/// The text of the next message for the application, empty for none.
std::string ReadText(TaskContext & oContext)
{
    std::unique_ptr<Message> const pMessage(oContext.ReadMessage());
    String sText;
    return pMessage ? pMessage->AddAsString(sText).s_str() : "";
}

} // namespace

TEST(TaskContext, NeedsAMachine)
{
    EXPECT_TRUE(Asserts("pProcessor", "TaskProcessor darf nicht NULL sein", [] { TaskContext{nullptr}; }));
}

TEST(TaskContextReceive, WaitsInSlicesUntilAMessageComes)
{
    constexpr int iMax = std::numeric_limits<int>::max();
    constexpr int iMin = std::numeric_limits<int>::min();
    constexpr int iNever = -1;
    // The time-out, the wait in which the message comes (from 0), all waits, and what is left of the time-out.
    Rows<int, int, std::string, int> vRows = {{250, iNever, "100 100 50 ", 0}, {200, iNever, "100 100 ", 0},
        {101, iNever, "100 1 ", 0}, {40, iNever, "40 ", 0}, {0, iNever, "", 0}, {250, 1, "100 100 ", 50},
        {40, 0, "40 ", 0}, {iMax, 0, "100 ", iMax - 100}, {-1, 2, "100 100 100 ", -1},
        {iMin, 0, "100 ", iMin}};
    for (auto const & [iGiven, iArrival, sWaits, iLeft] : vRows)
    {
        SCOPED_TRACE(testing::Message() << iGiven << ", arrival " << iArrival);
        IdleContext oContext;
        oContext.fOnWait = [&, iAwaited = iArrival](int iWait)
        {
            if (iWait == iAwaited)
                oContext.WriteMessage(NumberMessage(5));
        };
        int iTimeout = iGiven;
        EXPECT_EQ(TakeNumber(oContext.Receive(iTimeout)), iArrival == iNever ? 0 : 5);
        EXPECT_EQ(oContext.sWaits, sWaits);
        EXPECT_EQ(iTimeout, iLeft);

        // What is there already comes without a wait.
        oContext.WriteMessage(NumberMessage(6));
        EXPECT_EQ(TakeNumber(oContext.Receive(iTimeout)), 6);
        EXPECT_EQ(oContext.sWaits, sWaits);
        EXPECT_EQ(iTimeout, iLeft);
    }
}

TEST(TaskContextReceive, DiscardsWhatTheFilterDoesNotTake)
{
    // The time-out, what is queued, what arrives with each wait (0 for nothing), what is received (0 for nothing),
    // the waits, and what stays in the queue.
    Rows<int, std::vector<int>, std::vector<int>, int, std::string, int> vRows = {{0, {}, {}, 0, "", 0},
        {0, {2, 4}, {}, 2, "", 4}, {0, {1, 2}, {}, 0, "", 2}, {150, {1, 3, 4, 6}, {}, 4, "", 6},
        {150, {1}, {3, 2}, 2, "100 50 ", 0}, {150, {1}, {3, 0}, 0, "100 50 ", 0},
        {100, {}, {3, 2}, 0, "100 ", 0}, {-1, {1}, {0, 3, 0, 2}, 2, "100 100 100 100 ", 0},
        {-5, {}, {0, 3, 2}, 2, "100 100 100 ", 0}};
    for (auto const & [iTimeout, vQueued, vArriving, iReceived, sWaits, iNext] : vRows)
    {
        SCOPED_TRACE(testing::Message() << iTimeout << ", waits " << sWaits);
        IdleContext oContext;
        for (int const iNumber : vQueued)
            oContext.WriteMessage(NumberMessage(iNumber));
        oContext.fOnWait = [&, &vNumbers = vArriving](int iWait)
        {
            auto const i = static_cast<std::size_t>(iWait);
            if (i < vNumbers.size() && vNumbers[i] != 0)
                oContext.WriteMessage(NumberMessage(vNumbers[i]));
        };
        EXPECT_EQ(TakeNumber(oContext.ReceiveFilter(EvenFilter(), iTimeout)), iReceived);
        EXPECT_EQ(oContext.sWaits, sWaits);
        EXPECT_EQ(TakeNumber(oContext.Receive()), iNext);
    }
}

TEST(TaskContextQueues, JoinTheApplicationAndTheTasks)
{
    std::string sSeen;
    OpenContext oContext(new OneTaskMachine(
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
    EXPECT_EQ(oContext.sWaits, "7a 30 ");
    EXPECT_EQ(TakeNumber(oContext.ReadMessage()), 11);
    EXPECT_EQ(oContext.ReadMessage(), nullptr);
}

TEST(TaskVariables, AreKeptByNameAndKind)
{
    IdleContext oContext;
    EXPECT_EQ(oContext.GetVar("x", 5), 5);
    EXPECT_EQ(oContext.GetVar("x", 6), 6) << "asking makes no variable";
    oContext.SetVar("x", 1);
    EXPECT_EQ(oContext.GetVar("x", ValueString("none")), "none");
    oContext.SetVar("x", "text");
    oContext.SetVar("", 3);
    oContext.SetVar("x", 2);
    EXPECT_EQ(oContext.GetVar("x", 0), 2);
    EXPECT_EQ(oContext.GetVar("x", ValueString()), "text");
    EXPECT_EQ(oContext.GetVar("", 0), 3);
    oContext.SetVar("x", ValueString::Null());
    EXPECT_TRUE(oContext.GetVar("x", "none").IsNull());

    ValueString const & sNull = ValueString::Null();
    std::function<void()> const vCalls[] = {[&] { oContext.SetVar(sNull, 1); },
        [&] { oContext.SetVar(sNull, "t"); }, [&] { oContext.GetVar(sNull, 1); },
        [&] { oContext.GetVar(sNull, "t"); }, [&] { oContext.SetLocalVar(TaskStack(), sNull, 1); }};
    for (auto const & fCall : vCalls)
        EXPECT_TRUE(Asserts(&fCall == std::end(vCalls) - 1 ? "!s.IsNull()" : "!m_bNull && !Source.m_bNull",
            "Invalid operation. ValueString is NULL", fCall))
            << &fCall - vCalls;
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
    oContext.FormatTaskIDStack(TaskStack(), "x", sKey);
    EXPECT_EQ(sKey, "x");

    TaskStack oOther = oStack;
    oOther[0] = 8;
    for (int const i : {-1, 3})
        EXPECT_TRUE(Asserts("iIndex >= 0 && iIndex < GetSize()",
            "TaskStack hat kein Element " + std::to_string(i), [&] { oStack[i]; }));
    oContext.SetLocalVar(oStack, "x", 1);
    oContext.SetLocalVar(oStack, "x", "text");
    EXPECT_TRUE(oContext.GetLocalVar(oStack, "x", 0) == 1 && oContext.GetLocalVar(oStack, "x", "") == "text");
    EXPECT_TRUE(oContext.GetLocalVar(oOther, "x", 0) == 0 && oContext.GetLocalVar(oOther, "x", "") == "");
    EXPECT_EQ(oContext.GetVar("12.3.7.x", 0), 0) << "global ones are others";
}

TEST(TaskVariables, AskForNoMemoryOnceTheyAreThere)
{
    EXPECT_EQ(TestProgram("Allocations").Run({"variables"}).sOutput, "0\n");
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
            return oTask.GetVar("count", 0) == 3 ? +Task::TR_REMAIN : 0;
        }));
    oContext.Process();
    EXPECT_EQ(oContext.GetVar("count", 0), 3);
    EXPECT_EQ(oContext.GetVar("text", ""), "ggg");
    EXPECT_EQ(sLocal, "11l11l12ll");
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
    // The message, the reply, and whether the task "task" is simulated afterwards.
    Rows<TaskContextMessage, std::string, bool> vRows = {
        {MakeContextMessage(eQuery, "task", true, 9), "ActionId='1'; TaskName='task'; Mode='0'; Enabled='0'",
            false},
        {MakeContextMessage(eSet, "task", false, 3), "", false},
        {MakeContextMessage(eSet, "Task", true, 3), "", false},
        {MakeContextMessage(eSet, "task", true, 3), "", true},
        {MakeContextMessage(eSet, "task", true, -4), "", true},
        {MakeContextMessage(eQuery, "task"), "ActionId='1'; TaskName='task'; Mode='-4'; Enabled='1'", true},
        {MakeContextMessage(eQuery, "other"), "ActionId='1'; TaskName='other'; Mode='0'; Enabled='0'", true},
        {MakeContextMessage(2, "task"), "", true}, {MakeContextMessage(-1, "task"), "", true},
        {MakeContextMessage(eSet, "task", false, -4), "", false},
        {MakeContextMessage(eQuery, "Task"), "ActionId='1'; TaskName='Task'; Mode='3'; Enabled='1'", false}};
    bool bSimulated = false;
    OpenContext oContext(new OneTaskMachine(
        [&](OpenTask & oTask)
        {
            bSimulated = oTask.GetSimulationMode(0);
            return Task::TR_REMAIN;
        }));
    for (auto const & [oMessage, sReply, bExpected] : vRows)
    {
        String sText;
        SCOPED_TRACE(oMessage.AddAsString(sText).s_str());
        oContext.WriteMessage(oMessage);
        EXPECT_EQ(ReadText(oContext), sReply);
        EXPECT_EQ(oContext.ReadMessage(), nullptr);
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
    // sSwitch and sOutput: each line without its identifier.
    Rows<std::string, std::string> vRows = {{"Off", ""},
        {"Task", "Task 'machine' starts DoProcess \n"
                 "Task 'task' starts DoTaskEntry \n"
                 "Task 'task' starts DoProcess \n"
                 "Task 'task' received message note 1\n"
                 "Task 'task' sends message note 9\n"
                 "Task 'task' ClearSendBuffer\n"
                 "Task 'task' ClearReveiveBuffer\n"
                 "Task 'task' starts DoTaskExit \n"},
        {"TaskContext", "Receive\n"
                        "ReceiveFilter. Wait 0 ms for specified message.\nReceive\n"
                        "ReceiveFilter. Discard message note 2\n"
                        "ReceiveFilter. Timeout.\n"
                        "ReceiveFilter. Wait -1(INFINITE) for specified message.\nReceive\n"
                        "ReceiveFilter. Received message note 3\n"
                        "ReceiveFilter. Wait 0 ms for specified message.\nReceive\n"
                        "ReceiveFilter. Timeout.\n"
                        "Simulation enabled for task task to mode 3\n"
                        "Simulation disabled for task task\n"},
        {"Pipe", "GUI->TASK Send note 1; New size=1\n"
                 "GUI->TASK Send note 2; New size=2\n"
                 "GUI->TASK Send note 3; New size=3\n"
                 "GUI->TASK Received note 1; New size=2\n"
                 "GUI->TASK Received note 2; New size=1\n"
                 "GUI->TASK Received note 3; New size=0\n"
                 "GUI->TASK Received nothing.\n"
                 "TASK->GUI Send note 9; New size=1\n"
                 "TASK->GUI Clear\n"
                 "GUI->TASK Clear\n"
                 "TASK->GUI Received nothing.\n"
                 "GUI->TASK Clear\n"
                 "TASK->GUI Clear\n"}};
    for (auto const & [sSwitch, sOutput] : vRows)
    {
        TestProgram const oProgram("TaskTrace");
        oProgram.WriteFile("TaskTrace.ini", "[Debug]\nEnable=1\n[Debug/Switch]\n" + sSwitch + "=1\n");
        std::string sExpected;
        std::istringstream oLines(sOutput);
        for (std::string sLine; std::getline(oLines, sLine);)
            sExpected += sSwitch + ": " + sLine + "\n";
        EXPECT_EQ(oProgram.Run().sOutput, sExpected);
    }
}
