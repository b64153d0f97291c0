#include "TestMachine.h"
#include "TestPrelude.h"

#include <tesselkit/MachineCheck.h>
#include <tesselkit/MachineDrawing.h>
#include <tesselkit/MessageRecorder.h>
#include <tesselkit/ScriptedChild.h>

using namespace tsl;
using namespace tsltest;

namespace
{

using Table = std::vector<std::array<int, 3>>;

constexpr int INIT = Task::TASK_INIT, FINE = Task::TASK_FINE, PROCEED = Task::TR_PROCEED;

/// A machine with a table of the test's.
class TableMachine : public OneTaskMachine
{
public:
    TableMachine(int iId, TaskProcessor * pParent, Table const & vRows)
        : OneTaskMachine(nullptr, iId, pParent)
    {
        oTransitions = TaskTransitionList();
        for (auto const & [iSource, iResult, iDestination] : vRows)
            EXPECT_TRUE(oTransitions.AddTransition(iSource, iResult, iDestination).IsOk());
    }
};

// Below 210 are tasks, 210 is a machine that ends, 211 one that does not, 212 contains itself. The functions of 220, 221
// and 222 make nothing, another task, and throw.
template<int iId>
Task * Create(TaskProcessor * pParent)
{
    if constexpr (iId < 210)
        return new OpenTask("t" + std::to_string(iId % 100), pParent, iId,
            [](OpenTask & oTask)
            { return std::unique_ptr<Message>(oTask.Receive(250)) ? 0 : +Task::TR_REMAIN; });
    else if constexpr (iId == 210)
        return new TableMachine(iId, pParent, {{INIT, PROCEED, 201}, {201, 0, FINE}});
    else if constexpr (iId == 211)
        return new TableMachine(iId, pParent, {{INIT, PROCEED, 201}, {201, 0, 202}, {202, 0, 201}});
    else if constexpr (iId == 212)
        return new TableMachine(iId, pParent, {{INIT, PROCEED, 212}, {212, PROCEED, FINE}});
    else if constexpr (iId == 221)
        return Create<201>(pParent);
    else if constexpr (iId == 222)
        throw std::runtime_error("no");
    return nullptr;
}

void RegisterAll()
{
    auto const fRegister = []<int... vIds>(std::integer_sequence<int, vIds...>)
    {
        (TaskFactory::Instance().Register(vIds, &Create<vIds>), ...);
    };
    fRegister(std::integer_sequence<int, 201, 202, 203, 210, 211, 212, 220, 221, 222>());
}

MachineNames GetNames()
{
    MachineNames oNames;
    oNames.AddTask(200, "top \"1\"");
    oNames.AddTask(202, "two & <2>");
    oNames.AddResult(201, 0, "go");
    return oNames;
}

} // namespace

TEST(MachineCheck, NamesTheRowOfEachFault)
{
    RegisterAll();
    // The table, and the faults without the machine's name.
    Rows<Table, std::vector<std::string>> aRows = {
        {{{INIT, PROCEED, 201}, {201, 0, 210}, {210, PROCEED, 202}, {202, 7, 201}, {202, 8, FINE}}, {}},
        {{{INIT, PROCEED, 212}, {212, PROCEED, FINE}}, {}},
        {{{201, 0, FINE}}, {"The table has no first task."}},
        {{{INIT, PROCEED, 201}, {201, 0, FINE}, {202, 3, 203}},
            {"row (two & <2>, 3, t3): The task 'two & <2>' is never entered."}},
        {{{INIT, PROCEED, 299}, {299, 1, 220}, {220, 1, 221}, {221, 1, 222}, {222, 1, FINE}},
            {"row (TASK_INIT, TR_PROCEED, 299): No task is registered under its id.",
                "row (299, 1, 220): Its function makes no task.",
                "row (220, 1, t1): The task that is made for it has the id 201.",
                "row (t1, 1, 222): Its function throws: no"}},
        {{{INIT, PROCEED, 201}, {201, 5, FINE}}, {"The result go of 't1' has no row."}},
        {{{INIT, PROCEED, 210}, {210, 5, FINE}}, {"The result TR_PROCEED of 'machine' has no row."}},
        {{{INIT, PROCEED, 201}, {201, 0, 202}, {201, 1, FINE}}, {"No result of 'two & <2>' has a row."}},
        {{{INIT, PROCEED, 201}, {201, 0, 201}},
            {"It cannot end: no rows lead from its first task to TASK_FINE."}},
        {{{INIT, PROCEED, 201}, {201, 0, 202}, {201, 1, FINE}, {202, 0, 203}, {203, 0, 202}},
            {"It cannot end any more once it is in 'two & <2>'.",
                "It cannot end any more once it is in 't3'."}},
        {{{INIT, PROCEED, 210}, {210, PROCEED, 210}, {210, 1, FINE}},
            {"row (machine, TR_PROCEED, machine): A machine that has ended does not begin again, so the step "
             "never "
             "ends."}},
        {{{INIT, PROCEED, 211}, {211, 1, 211}, {211, 2, FINE}},
            {"/machine': It cannot end: no rows lead from its first task to TASK_FINE."}},
    };
    for (auto const & [vTable, vFaults] : aRows)
    {
        TableMachine oMachine(200, nullptr, vTable);
        Result const oResult = MachineCheck::Run(oMachine, GetNames());
        std::string sFaults;
        for (std::string const & sFault : vFaults)
            sFaults += " <- 2 Machine 'top \"1\"" + (sFault[0] == '/' ? sFault : "': " + sFault);
        EXPECT_TRUE(oResult.IsOk() || Tell(oResult).ends_with(sFaults)) << Tell(oResult);
        EXPECT_EQ(oResult.GetHistorySize(), static_cast<int>(vFaults.size()));
    }
    MachineNames oNames;
    oNames.AddResult(202, Task::TR_RETURN, "leave");
    TableMachine oLeaving(200, nullptr, {{INIT, PROCEED, 201}, {201, 0, 202}});
    EXPECT_TRUE(MachineCheck::Run(oLeaving, oNames).IsOk());
}

TEST(MachineDrawing, ShowsMachinesInsideAndTheRunningPath)
{
    RegisterAll();
    auto * const pMachine = new TableMachine(
        200, nullptr, {{INIT, PROCEED, 210}, {210, PROCEED, 202}, {202, 7, 212}, {212, PROCEED, FINE}});
    MachineDriver oDriver(pMachine);
    EXPECT_EQ(MachineDrawing(*pMachine).GetMermaid().Find("running"), -1);
    oDriver.Step();
    // The guide has a whole picture.
    MachineDrawing const oDrawing(*pMachine, GetNames());
    for (char const * const sPart : {"    subgraph n1 [\"machine\"]\n        n2(( ))\n        n3(\"t1\")\n",
             "n3 -->|\"go\"| n4\n", "n5(\"two #38; #60;2#62;\")\n", "n8(\"machine\")\n", "n5 -->|\"7\"| n6\n",
             "class n1,n3 running\n"})
        EXPECT_TRUE(Contains(oDrawing.GetMermaid().s_str(), sPart));
    for (char const * const sPart : {"digraph \"top \\\"1\\\"\"\n{\n    compound=true;\n",
             "    subgraph cluster_n1\n    {\n"
             "        graph [label=\"machine\", color=\"#dd6600\", penwidth=4];\n        n2 [shape=point];\n"
             "        n3 [label=\"t1\", color=\"#dd6600\", penwidth=4];\n",
             "    n0 -> n2 [lhead=cluster_n1];\n    n4 -> n5 [ltail=cluster_n1];\n"
             "    n5 -> n7 [label=\"7\", lhead=cluster_n6];\n    n9 -> n10 [ltail=cluster_n6];\n}\n"})
        EXPECT_TRUE(Contains(oDrawing.GetGraphviz().s_str(), sPart));
}

TEST(MachineDriver, TurnsItsClockAndFollowsItsScript)
{
    RegisterAll();
    MachineDriver oDriver(
        new TableMachine(200, nullptr, {{INIT, PROCEED, 210}, {210, PROCEED, 202}, {202, 0, FINE}}));
    EXPECT_EQ(oDriver.GetPath().s_str(), "machine");
    oDriver.Schedule(700, NumberMessage());
    oDriver.Schedule(0, NumberMessage());
    EXPECT_EQ(oDriver.Step(), Task::TR_REMAIN);
    EXPECT_EQ(oDriver.GetPath().s_str(), "machine/t2");
    EXPECT_EQ(oDriver.GetTime(), 250) << "the time of the one wait without a message";
    EXPECT_FALSE(oDriver.Run(1, 150));
    EXPECT_TRUE(oDriver.Run(10, 150));
    EXPECT_EQ(oDriver.GetTime(), 750) << "a slice of 100 ms is waited to its end";
}

TEST(MachineDriver, StopsAMachineThatWaitsForEver)
{
    OpenContext oDriver(new OneTaskMachine(nullptr));
    oDriver.SetTimeLimit(1000);
    EXPECT_EQ(Catch([&] { static_cast<void>(oDriver.ReceiveFilter(MessageFilterNoMessage(), -1)); })
                  .GetResult()
                  .GetErrorCode(),
        ERR::eTimeout);
}

TEST(MessageRecorder, KeepsWhatItsBusDelivers)
{
    auto pBus = std::make_unique<MessageDispatcher>();
    MessageRecorder oRecorder(*pBus);
    {
        MessageRecorder const oPassing(*pBus);
        EXPECT_THROW(MessageRecorder(*pBus, {Message::GetBaseType(), 4'000'000'000U}), Exception);
    }
    Result oResult;
    std::jthread const oOther(
        [&]
        {
            pBus->Process(NumberMessage(5), oResult);
            pBus->Process(ResultMessage(Result(7, "seven", Result::eCategoryDefault)), oResult);
        });
    EXPECT_TRUE(oRecorder.WaitForCount(2));
    EXPECT_FALSE(oRecorder.WaitForCount(3, 0));
    MessageList const oMessages = oRecorder.Take();
    EXPECT_EQ(oMessages.GetText(), "note 5\nseven\n");
    EXPECT_EQ(oMessages.GetAll<NumberMessage>().at(0)->iNumber, 5);
    EXPECT_EQ(oMessages.GetResults().at(0).GetErrorCode(), 7);
    EXPECT_EQ(oRecorder.GetCount(), 0);
    pBus.reset();
}

TEST(ScriptedChild, DoesWhatItsScriptSays)
{
    Rows<char const *, int> aRows = {
        {"ignore SIGTERM signal SIGTERM wait 1 exit 4", 4},
        {"signal SIGABRT", 128 + 6},
        {"", 0},
        {"sing", 2},
    };
    for (auto const & [sScript, iExitCode] : aRows)
    {
        ScriptedChild oChild(sScript);
        EXPECT_TRUE(oChild.Start().IsOk());
        EXPECT_EQ(oChild.WaitTermination(), CmdLine::eWaitTerminated);
        EXPECT_EQ(oChild.GetExitCode(), iExitCode) << sScript;
    }
}
