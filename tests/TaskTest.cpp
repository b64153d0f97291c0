#include "AssertionTest.h"
#include "TestMachine.h"

#include <tessel/TaskContextMessage.h>

#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <stdexcept>

using namespace tsltest;
using tsl::Task;
using tsl::TaskContext;
using tsl::TaskStack;
using tsl::ValueString;

namespace
{

char const * const RUN_TWICE = "Context wird für die Task zum zweiten Mal Instanziiert. "
                               "Entweder durch 2. Thread oder durch Rekursion!";

template<class Call>
testing::AssertionResult NeedsAStep(Call fCall)
{
    return Asserts("m->pContext!=NULL", "", fCall);
}

class SelfParent : public tsl::TaskProcessor
{
public:
    SelfParent() : TaskProcessor("self", this) {}

    int GetTaskID() const override { return 1; }
    tsl::TaskTransitionList const & GetTaskTransitionList() const override { return m_oTransitions; }

private:
    tsl::TaskTransitionList m_oTransitions;
};

/// A task that asks for a variable before it has a context, by way of an own virtual operation.
class EagerTask : public Task
{
public:
    explicit EagerTask(bool bLocal) : Task("eager", nullptr)
    {
        bLocal ? GetLocalVar("x", 0) : GetVar("x", 0);
    }

    int GetTaskID() const override { return 1; }
    tsl::MessageFilter const & GetDefinedInputFilter() const override { return m_oFilter; }

protected:
    int DoProcess() override { return TR_REMAIN; }

private:
    tsl::MessageFilterNoMessage m_oFilter;
};

std::string ToText(TaskStack const & oStack)
{
    std::string sText;
    for (int i = 0; i < static_cast<int>(oStack.GetSize()); ++i)
        sText += std::to_string(oStack[i]) + " ";
    return sText;
}

} // namespace

TEST(TaskResults, HaveNames)
{
    struct Row
    {
        int iResult;
        std::string sName;
    };
    Row const vRows[] = {{-1, "TR_REMAIN"}, {-2, "TR_PROCEED"}, {-3, "TR_RETURN"}, {-4, "USER_DEFINED"},
        {0, "USER_DEFINED"}, {7, "USER_DEFINED"}};
    for (Row const & oRow : vRows)
        EXPECT_EQ(Task::GetTaskResultName(oRow.iResult), oRow.sName) << oRow.iResult;
}

TEST(TaskConstruction, RefusesAnEmptyNameAndItselfAsParent)
{
    EXPECT_TRUE(Asserts(
        "!m->sName.IsEmpty()", "Name darf nicht leer sein", [] { OpenTask("", nullptr, 1, nullptr); }));
    EXPECT_TRUE(Asserts("m->pParent != this", "Parent darf nicht this sein!", [] { SelfParent(); }));
}

TEST(TaskConstruction, HasNoContextYet)
{
    for (bool const bLocal : {false, true})
        EXPECT_TRUE(NeedsAStep([&] { EagerTask{bLocal}; })) << bLocal;
}

TEST(TaskOutsideAStep, RefusesWhatNeedsTheContext)
{
    OpenTask oTask("task", nullptr, 1, nullptr);
    tsl::MessageFilterAllMessages const oFilter;
    EXPECT_TRUE(NeedsAStep([&] { oTask.GetContext(); }));
    EXPECT_TRUE(NeedsAStep([&] { oTask.Send(tsl::TaskContextMessage()); }));
    EXPECT_TRUE(NeedsAStep([&] { oTask.Receive(0); }));
    EXPECT_TRUE(NeedsAStep([&] { oTask.ReceiveFilter(oFilter, 0); }));
    EXPECT_TRUE(NeedsAStep([&] { oTask.Wait(0, false); }));
    EXPECT_TRUE(NeedsAStep([&] { oTask.ClearReveiveBuffer(); }));
    EXPECT_TRUE(NeedsAStep([&] { oTask.ClearSendBuffer(); }));
    EXPECT_TRUE(NeedsAStep([&] { oTask.SetVar("x", 1); }));
    EXPECT_TRUE(NeedsAStep([&] { oTask.SetLocalVar("x", "t"); }));
    EXPECT_TRUE(NeedsAStep([&] { oTask.GetLocalVar("x", "t"); }));
    EXPECT_TRUE(NeedsAStep([&] { oTask.GetSimulationMode(0); }));
    EXPECT_EQ(oTask.GetParent(), nullptr);
}

TEST(TaskSteps, MeetNoSecondOneFromWithinOrFromAnotherThread)
{
    tsl::TaskProcessor * pMachine = nullptr;
    TaskContext * pContext = nullptr;
    auto const fRunMachine = [&] { pMachine->Process(*pContext); };
    int iSteps = 0;
    auto const fWork = [&](OpenTask & oTask)
    {
        ++iSteps;
        EXPECT_TRUE(Asserts("p==NULL", RUN_TWICE, fRunMachine));
        EXPECT_TRUE(
            Asserts("p==NULL", RUN_TWICE, [&] { std::async(std::launch::async, fRunMachine).get(); }));
        EXPECT_TRUE(Asserts("p==NULL", RUN_TWICE, [&] { oTask.Process(*pContext); }));
        EXPECT_TRUE(Asserts("p==NULL", RUN_TWICE, [&] { oTask.TaskExit(*pContext); }));
        EXPECT_TRUE(Asserts("p==NULL", RUN_TWICE, [&] { oTask = OpenTask(oTask); }));
        EXPECT_EQ(&oTask.GetContext(), pContext) << "only the outer step takes the context away";
        return Task::TR_REMAIN;
    };
    pMachine = new OneTaskMachine(fWork);
    TaskContext oContext(pMachine);
    pContext = &oContext;
    fRunMachine();
    fRunMachine();
    EXPECT_EQ(iSteps, 2);
}

TEST(TaskSteps, LetOneOfManyThreadsIn)
{
    std::atomic<int> iInside{0};
    std::atomic<int> iRefused{0};
    auto * const pMachine = new OneTaskMachine(
        [&](OpenTask &)
        {
            EXPECT_EQ(++iInside, 1);
            --iInside;
            return Task::TR_REMAIN;
        });
    TaskContext oContext(pMachine);
    auto const fRun = [&]
    {
        for (int i = 0; i < 200; ++i)
        {
            try
            {
                pMachine->Process(oContext);
            }
            catch (tsl::Exception const &)
            {
                ++iRefused;
            }
        }
    };
    auto const oOther = std::async(std::launch::async, fRun);
    fRun();
    oOther.wait();
    EXPECT_LT(iRefused, 400);
}

TEST(TaskSteps, EndWithTheirContextWhateverIsThrown)
{
    OpenTask oTask("task", nullptr, 1, [](OpenTask &) -> int { throw 5; });
    TaskContext oContext(new OneTaskMachine(nullptr));
    EXPECT_THROW(oTask.Process(oContext), int);
    EXPECT_TRUE(NeedsAStep([&] { oTask.GetContext(); }));
    EXPECT_THROW(oTask.Process(oContext), int) << "the next step is possible";
}

TEST(TaskStacks, GoFromTheTaskUpToTheRoot)
{
    OneTaskMachine oRoot(nullptr, 12);
    OpenTask oTask("task", &oRoot, 7, nullptr);
    TaskStack oStack;
    EXPECT_TRUE(oStack.IsEmpty());
    oStack.Push(5);
    oTask.AcquireTaskStack(oStack);
    EXPECT_EQ(ToText(oStack), "5 7 12 ");
    oStack[0] = 6;
    TaskStack const oCopy = oStack;
    oTask.AcquireTaskStack(oStack);
    EXPECT_EQ(ToText(oCopy), "6 7 12 ");

    for (int const i : {-1, 3})
        EXPECT_TRUE(Asserts("iIndex >= 0 && iIndex < GetSize()",
            "TaskStack hat kein Element " + std::to_string(i), [&] { oCopy[i]; }))
            << i;
}

TEST(TaskCopies, ShareNameParentAndContext)
{
    OneTaskMachine oMachine(nullptr);
    OpenTask oTask("first", &oMachine, 1, nullptr);
    OpenTask oOther("other", nullptr, 2, nullptr);
    auto pCopy = std::make_unique<OpenTask>(oTask);
    oOther = oTask;
    oTask.SetTaskName("second");
    EXPECT_EQ(pCopy->GetTaskName(), "second");
    pCopy.reset();
    EXPECT_EQ(oOther.GetTaskName(), "second");
    EXPECT_EQ(oOther.GetParent(), &oMachine);
}

TEST(TaskCopies, OfAMachineShareTheTaskInWhichItStands)
{
    int iSteps = 0;
    auto const fWork = [&](OpenTask &)
    {
        ++iSteps;
        return Task::TR_REMAIN;
    };
    auto * const pMachine = new OneTaskMachine(fWork);
    auto pContext = std::make_unique<TaskContext>(pMachine);
    pContext->Process();
    OneTaskMachine oCopy(*pMachine);
    OneTaskMachine oAssigned(fWork);
    oAssigned.Process(*pContext);
    oAssigned = oCopy;
    TaskContext oContext(new OneTaskMachine(nullptr));
    pContext.reset();
    oCopy.Process(oContext);
    oAssigned.Process(oContext);
    EXPECT_EQ(iSteps, 4);
}

TEST(TaskCopies, MadeInAStepLeaveTheStepItsContext)
{
    std::unique_ptr<OpenTask> pCopy;
    OpenTask oTask("task", nullptr, 1,
        [&](OpenTask & oSelf)
        {
            pCopy = std::make_unique<OpenTask>(oSelf);
            oSelf.GetContext();
            pCopy->GetContext();
            return Task::TR_RETURN;
        });
    TaskContext oContext(new OneTaskMachine(nullptr));
    EXPECT_EQ(oTask.Process(oContext), Task::TR_RETURN);
    EXPECT_TRUE(NeedsAStep([&] { pCopy->GetContext(); }));
}

TEST(TaskOfTheEnd, ReturnsAndExpectsNothing)
{
    tsl::FineTask oFine(nullptr);
    tsl::FineTask oCopy(oFine);
    EXPECT_EQ(oCopy.GetTaskID(), Task::TASK_FINE);
    EXPECT_EQ(oCopy.DoProcess(), Task::TR_RETURN);
    EXPECT_EQ(oCopy.GetTaskName(), "FineTask");
    EXPECT_FALSE(oCopy.GetDefinedInputFilter().Match(tsl::TaskContextMessage()));
    EXPECT_TRUE(tsl::TaskFactory::Instance().IsRegistered(Task::TASK_FINE)) << "by the library";
}

TEST(TaskFactory, TellsItsObserversAndMakesTasksForTheirParent)
{
    struct NotingCallBack : tsl::TaskFactoryCallBack
    {
        void Invoke(tsl::TaskFactory::Args const & oArgs, bool &) override
        {
            sNotes += std::to_string(oArgs.GetKey()) + ":" + std::to_string(oArgs.GetAction()) + " ";
        }

        std::string sNotes;
    };

    tsl::TaskFactory & oFactory = tsl::TaskFactory::Instance();
    OneTaskMachine oMachine(nullptr);
    NotingCallBack oCallBack;
    tsl::TaskCreator const oCreator(&oMachine);
    EXPECT_TRUE(oFactory.Register(200,
        [](tsl::TaskProcessor * pParent) -> Task * { return new OpenTask("made", pParent, 200, nullptr); }));
    std::unique_ptr<Task> const pTask(oFactory.CreateProduct(200, oCreator));
    ASSERT_NE(pTask, nullptr);
    EXPECT_EQ(dynamic_cast<OpenTask &>(*pTask).GetParent(), &oMachine);
    oFactory.Unregister(200);
    EXPECT_EQ(oFactory.CreateProduct(200, oCreator), nullptr);
    EXPECT_EQ(oCallBack.sNotes, "200:1 200:2 200:4 200:8 ");
}
