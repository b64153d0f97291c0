// One step of a machine: with a transition, after which the new task remains, or without one, since all tasks
// remain. The factory makes each task before its entry; the machine deletes it after its exit.

#include "r05_work_tessel.h"

#include <benchmark/benchmark.h>

#include <tessel/Task.h>
#include <tessel/TaskContext.h>
#include <tessel/TaskFactory.h>
#include <tessel/TaskProcessor.h>
#include <tessel/TaskTransition.h>

#include <array>

namespace
{

enum TaskId
{
    ePing,
    ePong,
    eInnerPing,
    eInnerPong,
    eLeaver,
    eStayer,
    eMiddleOfPingPong,
    eMiddleOfLeaver,
    eMiddleOfStayer,
    eOuterOfPingPong,
    eOuterOfStayer,
    eOuterOne,
    eOuterTwo,
    eTopmost
};

constexpr int RESULT_SWITCH = 0;

/// The members of a state, of the same size in all libraries that this row compares.
using Data = std::array<long, 6>;

/// A task that remains in its first step and returns the given result in the next one.
template<int iId, int iResult>
class State : public tsl::Task
{
public:
    explicit State(tsl::TaskProcessor * pParent) : Task("State", pParent) {}

    int GetTaskID() const override { return iId; }
    tsl::MessageFilter const & GetDefinedInputFilter() const override { return m_oFilter; }

protected:
    int DoTaskEntry() override
    {
        tslbench::CountEntry();
        return TR_REMAIN;
    }
    int DoProcess() override
    {
        bool const bFirst = m_bFirst;
        m_bFirst = false;
        return bFirst ? TR_REMAIN : iResult;
    }
    void DoTaskExit() override { tslbench::CountExit(); }

private:
    tsl::MessageFilterNoMessage m_oFilter;
    Data m_oData{1, 2, 3, 4, 5, 6};
    bool m_bFirst = true;
};

/// A machine that begins with the first task and switches between the two.
template<int iId, int iFirst, int iSecond>
class Machine : public tsl::TaskProcessor
{
public:
    explicit Machine(tsl::TaskProcessor * pParent) : TaskProcessor("Machine", pParent) {}

    int GetTaskID() const override { return iId; }
    tsl::TaskTransitionList const & GetTaskTransitionList() const override
    {
        static tsl::TaskTransitionList const oTransitions = MakeTransitions();
        return oTransitions;
    }

protected:
    int DoTaskEntry() override
    {
        tslbench::CountEntry();
        return TR_REMAIN;
    }
    void DoTaskExit() override { tslbench::CountExit(); }

private:
    static tsl::TaskTransitionList MakeTransitions()
    {
        tsl::TaskTransitionList oTransitions;
        bool bOk = oTransitions.AddTransition(TASK_INIT, TR_PROCEED, iFirst).IsOk();
        for (int const iResult : {RESULT_SWITCH, static_cast<int>(TR_PROCEED)})
        {
            bOk = oTransitions.AddTransition(iFirst, iResult, iSecond).IsOk() && bOk;
            bOk = oTransitions.AddTransition(iSecond, iResult, iFirst).IsOk() && bOk;
        }
        return bOk ? oTransitions : tsl::TaskTransitionList();
    }

    Data m_oData{1, 2, 3, 4, 5, 6};
};

/// A machine whose end also ends its parent.
template<int iId, int iTask>
class LeavingMachine : public Machine<iId, iTask, iTask>
{
public:
    using Machine<iId, iTask, iTask>::Machine;

protected:
    int DoProcess() override
    {
        int const iResult = Machine<iId, iTask, iTask>::DoProcess();
        return iResult == tsl::Task::TR_PROCEED ? tsl::Task::TR_RETURN : iResult;
    }
};

template<class T>
tsl::Task * Create(tsl::TaskProcessor * pParent)
{
    return new T(pParent);
}

void RegisterTasks()
{
    tsl::TaskFactory & oFactory = tsl::TaskFactory::Instance();
    oFactory.Register(ePing, &Create<State<ePing, RESULT_SWITCH>>);
    oFactory.Register(ePong, &Create<State<ePong, RESULT_SWITCH>>);
    oFactory.Register(eInnerPing, &Create<State<eInnerPing, RESULT_SWITCH>>);
    oFactory.Register(eInnerPong, &Create<State<eInnerPong, RESULT_SWITCH>>);
    oFactory.Register(eLeaver, &Create<State<eLeaver, tsl::Task::TR_RETURN>>);
    oFactory.Register(eStayer, &Create<State<eStayer, tsl::Task::TR_REMAIN>>);
    oFactory.Register(eMiddleOfPingPong, &Create<Machine<eMiddleOfPingPong, eInnerPing, eInnerPong>>);
    oFactory.Register(eMiddleOfLeaver, &Create<LeavingMachine<eMiddleOfLeaver, eLeaver>>);
    oFactory.Register(eMiddleOfStayer, &Create<Machine<eMiddleOfStayer, eStayer, eStayer>>);
    oFactory.Register(
        eOuterOfPingPong, &Create<Machine<eOuterOfPingPong, eMiddleOfPingPong, eMiddleOfPingPong>>);
    oFactory.Register(eOuterOfStayer, &Create<Machine<eOuterOfStayer, eMiddleOfStayer, eMiddleOfStayer>>);
    oFactory.Register(eOuterOne, &Create<Machine<eOuterOne, eMiddleOfLeaver, eMiddleOfLeaver>>);
    oFactory.Register(eOuterTwo, &Create<Machine<eOuterTwo, eMiddleOfLeaver, eMiddleOfLeaver>>);
}

template<int iFirst, int iSecond>
void RunSteps(benchmark::State & oState)
{
    RegisterTasks();
    tsl::TaskContext oContext(new Machine<eTopmost, iFirst, iSecond>(nullptr));
    oContext.Process();
    for (auto _ : oState)
        oContext.Process();
    oState.SetItemsProcessed(oState.iterations());
}

BENCHMARK(RunSteps<ePing, ePong>)->Name("R05.flat ping-pong/tessel:TaskProcessor");
BENCHMARK(RunSteps<eOuterOne, eOuterTwo>)
    ->Name("R05.nested 3, outer transition (3 exits, 3 entries)/tessel:TaskProcessor");
BENCHMARK(RunSteps<eOuterOfPingPong, eOuterOfPingPong>)
    ->Name("R05.nested 3, innermost transition/tessel:TaskProcessor");
BENCHMARK(RunSteps<eOuterOfStayer, eOuterOfStayer>)
    ->Name("R05.step through 3 machines that remain/tessel:TaskProcessor");

} // namespace
