#include "AssertionTest.h"
#include "ProcessTest.h"
#include "TestMachine.h"
#include "TestMessages.h"

#include <tessel/TaskContextMessage.h>

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <stdexcept>

using namespace tsltest;
using tsl::Message;
using tsl::String;
using tsl::Task;
using tsl::TaskContext;
using tsl::TaskContextMessage;
using tsl::TaskStack;
using tsl::ValueString;

namespace
{

/// A context around a machine that does nothing.
struct IdleContext : OpenContext
{
    IdleContext() : OpenContext(new OneTaskMachine(nullptr)) {}
};

/// Takes even numbers.
class EvenFilter : public tsl::MessageFilter
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
    struct Row
    {
        int iTimeout;
        int iArrival; ///< the wait in which the message comes; 0 for the first one
        std::string sWaits;
        int iLeft; ///< of the time-out
    };
    Row const vRows[] = {
        {250, iNever, "100 100 50 ", 0},
        {200, iNever, "100 100 ", 0},
        {100, iNever, "100 ", 0},
        {101, iNever, "100 1 ", 0},
        {40, iNever, "40 ", 0},
        {0, iNever, "", 0},
        {250, 1, "100 100 ", 50},
        {40, 0, "40 ", 0},
        {iMax, 0, "100 ", iMax - 100},
        {-1, 2, "100 100 100 ", -1},
        {iMin, 0, "100 ", iMin},
    };
    for (Row const & oRow : vRows)
    {
        SCOPED_TRACE(testing::Message() << oRow.iTimeout << ", arrival " << oRow.iArrival);
        IdleContext oContext;
        oContext.fOnWait = [&](int iWait)
        {
            if (iWait == oRow.iArrival)
                oContext.WriteMessage(NumberMessage(5));
        };
        int iTimeout = oRow.iTimeout;
        EXPECT_EQ(TakeNumber(oContext.Receive(iTimeout)), oRow.iArrival == iNever ? 0 : 5);
        EXPECT_EQ(oContext.sWaits, oRow.sWaits);
        EXPECT_EQ(iTimeout, oRow.iLeft);

        // What is there already comes without a wait.
        oContext.WriteMessage(NumberMessage(6));
        oContext.sWaits.clear();
        iTimeout = oRow.iTimeout;
        EXPECT_EQ(TakeNumber(oContext.Receive(iTimeout)), 6);
        EXPECT_EQ(oContext.sWaits, "");
        EXPECT_EQ(iTimeout, oRow.iTimeout);
    }
}

TEST(TaskContextReceive, DiscardsWhatTheFilterDoesNotTake)
{
    struct Row
    {
        int iTimeout;
        std::vector<int> vQueued;
        std::vector<int> vArriving; ///< one with each wait, 0 for none
        int iReceived;              ///< 0 for none
        std::string sWaits;
        int iNext; ///< what stays in the queue
    };
    Row const vRows[] = {
        {0, {}, {}, 0, "", 0},
        {0, {2, 4}, {}, 2, "", 4},
        {0, {1, 2}, {}, 0, "", 2},
        {150, {1, 3, 4, 6}, {}, 4, "", 6},
        {150, {1}, {3, 2}, 2, "100 50 ", 0},
        {150, {1}, {3, 0}, 0, "100 50 ", 0},
        {100, {}, {3, 2}, 0, "100 ", 0},
        {-1, {1}, {0, 3, 0, 2}, 2, "100 100 100 100 ", 0},
        {-5, {}, {0, 3, 2}, 2, "100 100 100 ", 0},
    };
    for (Row const & oRow : vRows)
    {
        SCOPED_TRACE(testing::Message() << oRow.iTimeout << ", waits " << oRow.sWaits);
        IdleContext oContext;
        for (int const iNumber : oRow.vQueued)
            oContext.WriteMessage(NumberMessage(iNumber));
        oContext.fOnWait = [&](int iWait)
        {
            auto const i = static_cast<std::size_t>(iWait);
            if (i < oRow.vArriving.size() && oRow.vArriving[i] != 0)
                oContext.WriteMessage(NumberMessage(oRow.vArriving[i]));
        };
        EXPECT_EQ(TakeNumber(oContext.ReceiveFilter(EvenFilter(), oRow.iTimeout)), oRow.iReceived);
        EXPECT_EQ(oContext.sWaits, oRow.sWaits);
        EXPECT_EQ(TakeNumber(oContext.Receive()), oRow.iNext);
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

TEST(TaskContextQueues, AreMadeByTheContextAlone)
{
    struct OwnQueues : IdleContext
    {
        tsl::Pipe<Message> * CreateInputQueue() const override { throw std::logic_error("called"); }
        tsl::Pipe<Message> * CreateOutputQueue() const override { throw std::logic_error("called"); }
    };
    EXPECT_NO_THROW(OwnQueues());
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
}

TEST(TaskVariables, RefuseANullName)
{
    ValueString const & sNull = ValueString::Null();
    std::string const sInfo = "Invalid operation. ValueString is NULL";
    IdleContext oContext;
    for (int i = 0; i < 2; ++i)
    {
        SCOPED_TRACE(i);
        std::string const sExpression = "!m_bNull && !Source.m_bNull";
        EXPECT_TRUE(Asserts(sExpression, sInfo, [&] { oContext.SetVar(sNull, 1); }));
        EXPECT_TRUE(Asserts(sExpression, sInfo, [&] { oContext.SetVar(sNull, "t"); }));
        EXPECT_TRUE(Asserts(sExpression, sInfo, [&] { oContext.GetVar(sNull, 1); }));
        EXPECT_TRUE(Asserts(sExpression, sInfo, [&] { oContext.GetVar(sNull, "t"); }));
        EXPECT_TRUE(Asserts("!s.IsNull()", sInfo, [&] { oContext.SetLocalVar(TaskStack(), sNull, 1); }));
        oContext.SetVar("x", 1);
    }
    EXPECT_EQ(oContext.GetVar("x", 0), 1);
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
    oContext.SetLocalVar(oStack, "x", 1);
    oContext.SetLocalVar(oStack, "x", "text");
    EXPECT_EQ(oContext.GetLocalVar(oStack, "x", 0), 1);
    EXPECT_EQ(oContext.GetLocalVar(oStack, "x", "none"), "text");
    EXPECT_EQ(oContext.GetLocalVar(oOther, "x", 0), 0);
    EXPECT_EQ(oContext.GetLocalVar(oOther, "x", "none"), "none");
    EXPECT_EQ(oContext.GetVar("12.3.7.x", 0), 0) << "global ones are others";
}

TEST(TaskVariables, AskForNoMemoryOnceTheyAreThere)
{
    ProgramOutcome const oOutcome = TestProgram("VariableAllocations").Run();
    EXPECT_EQ(oOutcome.sOutput, "0\n");
    EXPECT_EQ(oOutcome.iExitCode, 0);
}

TEST(TaskVariables, OutliveTheTask)
{
    // In one step from the first task to the second one and back to a new object of the first one.
    OpenContext oContext(new OneTaskMachine(
        [](OpenTask & oTask)
        {
            oTask.SetVar("count", oTask.GetVar("count", 0) + 1);
            oTask.SetVar("text", oTask.GetVar("text", "") + "g");
            oTask.SetLocalVar("count", oTask.GetLocalVar("count", 10) + 1);
            oTask.SetLocalVar("text", oTask.GetLocalVar("text", "") + "l");
            return oTask.GetVar("count", 0) == 3 ? +Task::TR_REMAIN : 0;
        }));
    oContext.Process();
    EXPECT_EQ(oContext.GetVar("count", 0), 3);
    EXPECT_EQ(oContext.GetVar("text", ""), "ggg");
    TaskStack oStack;
    oStack.Push(OneTaskMachine::TASK_ID);
    oStack.Push(100);
    EXPECT_EQ(oContext.GetLocalVar(oStack, "count", 0), 12);
    EXPECT_EQ(oContext.GetLocalVar(oStack, "text", ""), "ll");
    oStack[0] = OneTaskMachine::OTHER_TASK_ID;
    EXPECT_EQ(oContext.GetLocalVar(oStack, "count", 0), 11);
    EXPECT_EQ(oContext.GetLocalVar(oStack, "text", ""), "l");
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
    struct Row
    {
        TaskContextMessage oMessage;
        std::string sReply;
        bool bSimulated; ///< the task "task" afterwards
    };
    Row const vRows[] = {
        {MakeContextMessage(eQuery, "task", true, 9), "ActionId='1'; TaskName='task'; Mode='0'; Enabled='0'",
            false},
        {MakeContextMessage(eSet, "task", false, 3), "", false},
        {MakeContextMessage(eSet, "Task", true, 3), "", false},
        {MakeContextMessage(eSet, "task", true, 3), "", true},
        {MakeContextMessage(eSet, "task", true, -4), "", true},
        {MakeContextMessage(eQuery, "task"), "ActionId='1'; TaskName='task'; Mode='-4'; Enabled='1'", true},
        {MakeContextMessage(eQuery, "other"), "ActionId='1'; TaskName='other'; Mode='0'; Enabled='0'", true},
        {MakeContextMessage(2, "task"), "", true},
        {MakeContextMessage(-1, "task"), "", true},
        {MakeContextMessage(eSet, "task", false, -4), "", false},
        {MakeContextMessage(eQuery, "Task"), "ActionId='1'; TaskName='Task'; Mode='3'; Enabled='1'", false},
    };
    bool bSimulated = false;
    OpenContext oContext(new OneTaskMachine(
        [&](OpenTask & oTask)
        {
            bSimulated = oTask.GetSimulationMode(0);
            return Task::TR_REMAIN;
        }));
    for (Row const & oRow : vRows)
    {
        String sText;
        SCOPED_TRACE(oRow.oMessage.AddAsString(sText).s_str());
        oContext.WriteMessage(oRow.oMessage);
        EXPECT_EQ(ReadText(oContext), oRow.sReply);
        EXPECT_EQ(oContext.ReadMessage(), nullptr);
        EXPECT_EQ(oContext.Receive(), nullptr) << "no task sees it";
        oContext.Process();
        EXPECT_EQ(bSimulated, oRow.bSimulated);
    }
    int iMode = 7;
    EXPECT_FALSE(oContext.GetSimulationMode("task", iMode));
    EXPECT_EQ(iMode, 7);
}

TEST(Simulation, GoesByThePresentName)
{
    std::string sSeen;
    OpenContext oContext(new OneTaskMachine(
        [&](OpenTask & oTask)
        {
            sSeen += oTask.GetSimulationMode(0) ? "yes " : "no ";
            oTask.SetTaskName("renamed");
            return Task::TR_REMAIN;
        }));
    oContext.WriteMessage(MakeContextMessage(TaskContextMessage::eActionSet, "task", true, 1));
    oContext.Process();
    oContext.Process();
    EXPECT_EQ(sSeen, "yes no ");
}

TEST(ContextMessage, IsCopiedAndWalkedWhole)
{
    TaskContextMessage const oMessage = MakeContextMessage(4, "name", true, 5);
    std::unique_ptr<TaskContextMessage> const pClone(oMessage.GetClone());
    String sText;
    EXPECT_EQ(pClone->AddAsString(sText), "ActionId='4'; TaskName='name'; Mode='5'; Enabled='1'");
    TaskContextMessage const oEmpty;
    sText.Clear();
    EXPECT_EQ(oEmpty.AddAsString(sText), "ActionId='0'; TaskName=''; Mode='0'; Enabled='0'");

    tsl::TaskContextMessageConstIterator const oEnd(oMessage);
    EXPECT_TRUE(
        Asserts("false", "TaskContextMessageConstIterator::GetValue(): Zugriff auf ungültiges Element.",
            [&] { oEnd.GetValue(); }));
    EXPECT_TRUE(
        Asserts("false", "TaskContextMessageConstIterator::GetName(): Zugriff auf ungültiges Element.",
            [&] { oEnd.GetName(); }));
}

TEST(TaskTrace, TellsEveryStepAndMessageIfItIsSwitchedOn)
{
    struct Row
    {
        std::string sIni;
        std::string sOutput;
    };
    Row const vRows[] = {
        {"", ""},
        {"[Debug]\nEnable=1\n[Debug/Switch]\nTask=1\n", "Task: Task 'Machine' starts DoProcess \n"
                                                        "Task: Task 'Talker' starts DoTaskEntry \n"
                                                        "Task: Task 'Talker' starts DoProcess \n"
                                                        "Task: Task 'Talker' received message note 1\n"
                                                        "Task: Task 'Talker' sends message note 9\n"
                                                        "Task: Task 'Talker' ClearSendBuffer\n"
                                                        "Task: Task 'Talker' ClearReveiveBuffer\n"
                                                        "Task: Task 'Talker' starts DoTaskExit \n"},
        {"[Debug]\nEnable=1\n[Debug/Switch]\nTaskContext=1\n",
            "TaskContext: Receive\n"
            "TaskContext: ReceiveFilter. Wait 0 ms for specified message.\n"
            "TaskContext: Receive\n"
            "TaskContext: ReceiveFilter. Discard message note 2\n"
            "TaskContext: ReceiveFilter. Timeout.\n"
            "TaskContext: ReceiveFilter. Wait -1(INFINITE) for specified message.\n"
            "TaskContext: Receive\n"
            "TaskContext: ReceiveFilter. Received message note 3\n"
            "TaskContext: Receive\n"
            "TaskContext: ReceiveFilter. Wait 0 ms for specified message.\n"
            "TaskContext: Receive\n"
            "TaskContext: ReceiveFilter. Timeout.\n"
            "TaskContext: Simulation enabled for task Talker to mode 3\n"
            "TaskContext: Simulation disabled for task Talker\n"},
        {"[Debug]\nEnable=1\n[Debug/Switch]\nPipe=1\n", "Pipe: GUI->TASK Send note 1; New size=1\n"
                                                        "Pipe: GUI->TASK Send note 2; New size=2\n"
                                                        "Pipe: GUI->TASK Send note 3; New size=3\n"
                                                        "Pipe: GUI->TASK Received note 1; New size=2\n"
                                                        "Pipe: GUI->TASK Received note 2; New size=1\n"
                                                        "Pipe: GUI->TASK Received note 3; New size=0\n"
                                                        "Pipe: GUI->TASK Received nothing.\n"
                                                        "Pipe: GUI->TASK Received nothing.\n"
                                                        "Pipe: TASK->GUI Send note 9; New size=1\n"
                                                        "Pipe: TASK->GUI Clear\n"
                                                        "Pipe: GUI->TASK Clear\n"
                                                        "Pipe: TASK->GUI Received nothing.\n"
                                                        "Pipe: GUI->TASK Clear\n"
                                                        "Pipe: TASK->GUI Clear\n"},
    };
    for (Row const & oRow : vRows)
    {
        TestProgram const oProgram("TaskTrace");
        oProgram.WriteFile("TaskTrace.ini", oRow.sIni);
        ProgramOutcome const oOutcome = oProgram.Run();
        EXPECT_EQ(oOutcome.iExitCode, 0);
        EXPECT_EQ(oOutcome.sOutput, oRow.sOutput) << oRow.sIni;
    }
}
