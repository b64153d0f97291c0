#include "TestMachine.h"
#include "TestPrelude.h"

using namespace tsl;
using namespace tsltest;

namespace
{

/// A machine that is its own parent.
struct SelfParent : OneTaskMachine
{
    SelfParent() : OneTaskMachine(nullptr, 1, this) {}
};

} // namespace

TEST(TaskConstruction, RefusesAnEmptyNameAndItselfAsParentAndNoMachine)
{
    EXPECT_TRUE(Asserts(
        "!m->sName.IsEmpty()", "Name darf nicht leer sein", [] { OpenTask("", nullptr, 1, nullptr); }));
    EXPECT_TRUE(Asserts("m->pParent != this", "Parent darf nicht this sein!", [] { SelfParent(); }));
    EXPECT_TRUE(Asserts("pProcessor", "TaskProcessor darf nicht NULL sein", [] { TaskContext{nullptr}; }));
    EXPECT_TRUE(Asserts("false", "Unexpected", [] { OneTaskMachine(nullptr).GetDefinedInputFilter(); }));
}

TEST(TaskConstruction, HasTheFormsOfEveryClass)
{
    struct alignas(128) Aligned : OpenTask
    {
        Aligned() : OpenTask("aligned", nullptr, 1, nullptr) {}
    };
    std::unique_ptr<Aligned> const pAligned(new (std::nothrow) Aligned);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(pAligned.get()) % alignof(Aligned), 0U);
    alignas(OpenTask) std::byte aRoom[sizeof(OpenTask)];
    auto * const pPlaced = new (aRoom) OpenTask("task", nullptr, 3, nullptr);
    EXPECT_EQ(static_cast<void *>(pPlaced), aRoom);
    pPlaced->~OpenTask();
}

TEST(TaskOutsideAStep, RefusesWhatNeedsTheContext)
{
    OpenTask oTask("task", nullptr, 1, nullptr);
    MessageFilterAllMessages const oFilter;
    EXPECT_TRUE(AllAssert("m->pContext!=NULL", "",
        {[&] { oTask.GetContext(); }, [&] { oTask.Send(TaskContextMessage()); }, [&] { oTask.Receive(0); },
            [&] { oTask.ReceiveFilter(oFilter, 0); }, [&] { oTask.Wait(0, false); },
            [&] { oTask.ClearReveiveBuffer(); }, [&] { oTask.ClearSendBuffer(); },
            [&] { oTask.SetVar("x", 1); }, [&] { oTask.SetLocalVar("x", "t"); },
            [&] { oTask.GetLocalVar("x", "t"); }, [&] { oTask.GetSimulationMode(0); }}));
}

TEST(TaskResults, HaveNames)
{
    std::string sNames;
    for (int const iResult : {Task::TR_REMAIN + 0, Task::TR_PROCEED + 0, Task::TR_RETURN + 0, -4})
        sNames += Task::GetTaskResultName(iResult) + std::string(" ");
    EXPECT_EQ(sNames, "TR_REMAIN TR_PROCEED TR_RETURN USER_DEFINED ");
}

TEST(TaskSteps, MeetNoSecondOneFromWithinOrFromAnotherThread)
{
    int iSteps = 0;
    auto const fWork = [&](OpenTask & oTask)
    {
        ++iSteps;
        TaskContext & oContext = oTask.GetContext();
        auto const fRunMachine = [&] { oTask.GetParent()->Process(oContext); };
        EXPECT_TRUE(AllAssert("p==NULL",
            "Context wird für die Task zum zweiten Mal Instanziiert. "
            "Entweder durch 2. Thread oder durch Rekursion!",
            {fRunMachine, [&] { std::async(std::launch::async, fRunMachine).get(); },
                [&] { oTask.Process(oContext); }, [&] { oTask.TaskExit(oContext); },
                [&] { oTask = OpenTask(oTask); }}));
        EXPECT_EQ(&oTask.GetContext(), &oContext) << "only the outer step takes the context away";
        return Task::TR_REMAIN;
    };
    OpenContext oContext(new OneTaskMachine(fWork));
    oContext.Process();
    oContext.Process();
    EXPECT_EQ(iSteps, 2);
}

TEST(TaskSteps, LetOneOfManyThreadsIn)
{
    std::atomic<int> iInside{0};
    auto * const pMachine = new OneTaskMachine(Remaining(
        [&](auto &)
        {
            EXPECT_EQ(++iInside, 1);
            --iInside;
        }));
    TaskContext oContext(pMachine);
    RunOnThreads(2,
        [&](int)
        {
            for (int i = 0; i < 200; ++i)
                static_cast<void>(Catch([&] { pMachine->Process(oContext); }));
        });
}

TEST(TaskCreation, MakesATaskOfItsOwnEachTime)
{
    static OpenTask * pOnly = nullptr;
    auto const fGiveTheOnlyOne = [](TaskProcessor * pParent) -> Task *
    { return pOnly ? pOnly : pOnly = new OpenTask("only", pParent, 103, [](OpenTask &) { return 0; }); };
    auto * const pMachine = new OneTaskMachine(nullptr);
    TaskContext oContext(pMachine);
    for (int const iId : {103, 104})
        TaskFactory::Instance().Register(iId, fGiveTheOnlyOne);
    EXPECT_TRUE(pMachine->oTransitions.AddTransition(Task::TASK_INIT, Task::TR_PROCEED, 103).IsOk());
    EXPECT_TRUE(pMachine->oTransitions.AddTransition(103, 0, 104).IsOk());
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(Asserts(
            "pTask != NULL", "Task-Objekt 104 could not be found or created.", [&] { oContext.Process(); }));
}

TEST(TaskFailures, NameTheirMachineInTheCause)
{
    TaskFactory::Instance().Register(105,
        [](TaskProcessor * pParent) -> Task *
        { return new OpenTask("t", pParent, 105, [](OpenTask &) { return 0; }); });
    TaskFactory::Instance().Register(106, [](TaskProcessor *) -> Task * { return nullptr; });
    Rows<int, std::string> aRows = {
        {Task::TASK_INIT, "The table has no first task."},
        {105, "The table has no row for this result."},
        {106, "Its function has made no new task."},
        {107, "No task is registered under this id."},
    };
    for (auto const & [iFirst, sCause] : aRows)
    {
        auto * const pMachine = new OneTaskMachine(nullptr);
        TaskContext oContext(pMachine);
        pMachine->oTransitions = TaskTransitionList();
        // The table refuses the first of these ids, and stays without a first task.
        static_cast<void>(pMachine->oTransitions.AddTransition(Task::TASK_INIT, Task::TR_PROCEED, iFirst));
        Result const oResult = Catch([&] { oContext.Process(); }).GetResult();
        ASSERT_EQ(oResult.GetHistorySize(), 1) << sCause;
        EXPECT_EQ(oResult.GetHistory(0).GetText().s_str(), sCause + " Machine 'machine' (Id=100).");
    }
}

TEST(TaskCopies, ShareNameParentContextAndCurrentTask)
{
    OneTaskMachine oMachine(nullptr);
    OpenTask oTask("first", &oMachine, 1, nullptr);
    OpenTask oOther("other", nullptr, 2, nullptr);
    oOther = oTask;
    OpenTask(oTask).SetTaskName("second");
    EXPECT_EQ(oOther.GetTaskName(), "second");
    EXPECT_EQ(oOther.GetParent(), &oMachine);

    int iSteps = 0;
    auto * const pMachine = new OneTaskMachine(Remaining([&](auto &) { ++iSteps; }));
    auto pContext = std::make_unique<TaskContext>(pMachine);
    pContext->Process();
    OneTaskMachine oCopy(*pMachine);
    OneTaskMachine oAssigned(nullptr);
    oAssigned = oCopy;
    pContext.reset();
    TaskContext oContext(new OneTaskMachine(nullptr));
    oCopy.Process(oContext);
    oAssigned.Process(oContext);
    EXPECT_EQ(iSteps, 3);
}
