#include "AssertionTest.h"
#include "TestMachine.h"

#include <future>
#include <memory>
#include <stdexcept>

using namespace tsl;
using namespace tsltest;

namespace
{

char const * const RUN_TWICE = "Context wird für die Task zum zweiten Mal Instanziiert. "
                               "Entweder durch 2. Thread oder durch Rekursion!";

template<class Call>
testing::AssertionResult NeedsAStep(Call fCall)
{
    return Asserts("m->pContext!=NULL", "", fCall);
}

/// A machine that is its own parent.
class SelfParent : public OneTaskMachine
{
public:
    SelfParent() : OneTaskMachine(nullptr, 1, this) {}
};

/// A task that asks for a variable before it has a context, by way of an own virtual operation.
class EagerTask : public OpenTask
{
public:
    explicit EagerTask(bool bLocal) : OpenTask("eager", nullptr, 1, nullptr)
    {
        bLocal ? GetLocalVar("x", 0) : GetVar("x", 0);
    }
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
    std::pair<int, char const *> const vRows[] = {{-1, "TR_REMAIN"}, {-2, "TR_PROCEED"}, {-3, "TR_RETURN"},
        {-4, "USER_DEFINED"}, {0, "USER_DEFINED"}, {7, "USER_DEFINED"}};
    for (auto const & [iResult, sName] : vRows)
        EXPECT_EQ(Task::GetTaskResultName(iResult), ValueString(sName)) << iResult;
}

TEST(TaskConstruction, RefusesAnEmptyNameAndItselfAsParent)
{
    EXPECT_TRUE(Asserts(
        "!m->sName.IsEmpty()", "Name darf nicht leer sein", [] { OpenTask("", nullptr, 1, nullptr); }));
    EXPECT_TRUE(Asserts("m->pParent != this", "Parent darf nicht this sein!", [] { SelfParent(); }));
    EXPECT_TRUE(Asserts("false", "Unexpected", [] { OneTaskMachine(nullptr).GetDefinedInputFilter(); }));
}

TEST(TaskOutsideAStep, RefusesWhatNeedsTheContext)
{
    OpenTask oTask("task", nullptr, 1, nullptr);
    MessageFilterAllMessages const oFilter;
    std::function<void()> const vCalls[] = {[&] { oTask.GetContext(); },
        [&] { oTask.Send(TaskContextMessage()); }, [&] { oTask.Receive(0); },
        [&] { oTask.ReceiveFilter(oFilter, 0); }, [&] { oTask.Wait(0, false); },
        [&] { oTask.ClearReveiveBuffer(); }, [&] { oTask.ClearSendBuffer(); }, [&] { oTask.SetVar("x", 1); },
        [&] { oTask.SetLocalVar("x", "t"); }, [&] { oTask.GetLocalVar("x", "t"); },
        [&] { oTask.GetSimulationMode(0); }, [] { EagerTask(false); }, [] { EagerTask(true); }};
    for (auto const & fCall : vCalls)
        EXPECT_TRUE(NeedsAStep(fCall)) << &fCall - vCalls;
}

TEST(TaskSteps, MeetNoSecondOneFromWithinOrFromAnotherThread)
{
    TaskProcessor * pMachine = nullptr;
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
            catch (Exception const &)
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

TEST(TaskCopies, ShareNameParentContextAndTheTaskInWhichAMachineStands)
{
    OneTaskMachine oMachine(nullptr);
    OpenTask oTask("first", &oMachine, 1, nullptr);
    OpenTask oOther("other", nullptr, 2, nullptr);
    oOther = oTask;
    OpenTask(oTask).SetTaskName("second");
    EXPECT_EQ(oOther.GetTaskName(), "second");
    EXPECT_EQ(oOther.GetParent(), &oMachine);

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
            return &oSelf.GetContext() == &pCopy->GetContext() ? 5 : 6;
        });
    TaskContext oContext(new OneTaskMachine(nullptr));
    EXPECT_EQ(oTask.Process(oContext), 5);
    EXPECT_TRUE(NeedsAStep([&] { pCopy->GetContext(); }));
}

TEST(TaskOfTheEnd, ReturnsAndExpectsNothing)
{
    FineTask oCopy{FineTask(nullptr)};
    EXPECT_EQ(oCopy.GetTaskID(), Task::TASK_FINE);
    EXPECT_EQ(oCopy.DoProcess(), Task::TR_RETURN);
    EXPECT_EQ(oCopy.GetTaskName(), "FineTask");
    EXPECT_FALSE(oCopy.GetDefinedInputFilter().Match(TaskContextMessage()));
    EXPECT_TRUE(TaskFactory::Instance().IsRegistered(Task::TASK_FINE)) << "by the library";
}

TEST(TaskFactory, MakesTasksForTheirParent)
{
    TaskFactory & oFactory = TaskFactory::Instance();
    OneTaskMachine oMachine(nullptr);
    TaskCreator const oCreator(&oMachine);
    EXPECT_TRUE(oFactory.Register(
        200, [](TaskProcessor * pParent) -> Task * { return new OpenTask("made", pParent, 200, nullptr); }));
    std::unique_ptr<Task> const pTask(oFactory.CreateProduct(200, oCreator));
    ASSERT_NE(pTask, nullptr);
    EXPECT_EQ(dynamic_cast<OpenTask &>(*pTask).GetParent(), &oMachine);
    oFactory.Unregister(200);
    EXPECT_EQ(oFactory.CreateProduct(200, oCreator), nullptr);
}
