#include "Crossing.h"

#include "ModeSwitch.h"
#include "Phase.h"

#include <tessel/Exception.h>
#include <tessel/TaskFactory.h>

#include <initializer_list>

namespace
{

struct Transition
{
    int iSource;
    int iResult;
    int iDestination;
};

tsl::TaskTransitionList MakeTable(std::initializer_list<Transition> vTransitions)
{
    tsl::TaskTransitionList oTable;
    for (Transition const & oRow : vTransitions)
    {
        tsl::Result const oResult = oTable.AddTransition(oRow.iSource, oRow.iResult, oRow.iDestination);
        if (oResult.IsError())
            tsl::Exception::Throw(oResult);
    }
    return oTable;
}

template<class TaskClass>
tsl::Task * Create(tsl::TaskProcessor * pParent)
{
    return new TaskClass(pParent);
}

} // namespace

void RegisterCrossing()
{
    using Parent = tsl::TaskProcessor;
    using tsl::Task;

    tsl::TaskFactory & oFactory = tsl::TaskFactory::Instance();
    oFactory.Register(TASK_MODE_SWITCH, &Create<ModeSwitch>);
    oFactory.Register(TASK_DAY, &Create<DayMachine>);
    oFactory.Register(TASK_NIGHT, &Create<NightMachine>);

    oFactory.Register(PHASE_RED, [](Parent * p) -> Task * { return new Phase(PHASE_RED, "Red", p); });
    oFactory.Register(
        PHASE_RED_AMBER, [](Parent * p) -> Task * { return new Phase(PHASE_RED_AMBER, "RedAmber", p); });
    oFactory.Register(PHASE_GREEN, &Create<Green>);
    oFactory.Register(PHASE_AMBER, [](Parent * p) -> Task * { return new Phase(PHASE_AMBER, "Amber", p); });
    oFactory.Register(PHASE_DARK, [](Parent * p) -> Task * { return new Phase(PHASE_DARK, "Dark", p); });
}

tsl::MachineNames GetCrossingNames()
{
    tsl::MachineNames oNames;
    oNames.AddResult(TASK_MODE_SWITCH, MODE_DAY, "day");
    oNames.AddResult(TASK_MODE_SWITCH, MODE_NIGHT, "night");
    oNames.AddResult(TASK_MODE_SWITCH, MODE_OFF, "off");
    for (int const iPhase : {PHASE_RED, PHASE_RED_AMBER, PHASE_GREEN, PHASE_AMBER, PHASE_DARK})
        oNames.AddResult(iPhase, RESULT_MODE_CHANGE, "mode change");
    return oNames;
}

tsl::TaskTransitionList const & Crossing::GetTaskTransitionList() const
{
    static tsl::TaskTransitionList const oTable = MakeTable({
        {TASK_INIT, TR_PROCEED, TASK_MODE_SWITCH},
        {TASK_MODE_SWITCH, MODE_DAY, TASK_DAY},
        {TASK_MODE_SWITCH, MODE_NIGHT, TASK_NIGHT},
        {TASK_MODE_SWITCH, MODE_OFF, TASK_FINE},
        {TASK_DAY, TR_PROCEED, TASK_MODE_SWITCH},
        {TASK_NIGHT, TR_PROCEED, TASK_MODE_SWITCH},
    });
    return oTable;
}

tsl::TaskTransitionList const & DayMachine::GetTaskTransitionList() const
{
    static tsl::TaskTransitionList const oTable = MakeTable({
        {TASK_INIT, TR_PROCEED, PHASE_RED},
        {PHASE_RED, TR_PROCEED, PHASE_RED_AMBER},
        {PHASE_RED, RESULT_MODE_CHANGE, TASK_FINE},
        {PHASE_RED_AMBER, TR_PROCEED, PHASE_GREEN},
        {PHASE_RED_AMBER, RESULT_MODE_CHANGE, PHASE_GREEN},
        {PHASE_GREEN, TR_PROCEED, PHASE_AMBER},
        {PHASE_GREEN, RESULT_MODE_CHANGE, PHASE_AMBER},
        {PHASE_AMBER, TR_PROCEED, PHASE_RED},
        {PHASE_AMBER, RESULT_MODE_CHANGE, PHASE_RED},
    });
    return oTable;
}

tsl::TaskTransitionList const & NightMachine::GetTaskTransitionList() const
{
    static tsl::TaskTransitionList const oTable = MakeTable({
        {TASK_INIT, TR_PROCEED, PHASE_AMBER},
        {PHASE_AMBER, TR_PROCEED, PHASE_DARK},
        {PHASE_AMBER, RESULT_MODE_CHANGE, TASK_FINE},
        {PHASE_DARK, TR_PROCEED, PHASE_AMBER},
        {PHASE_DARK, RESULT_MODE_CHANGE, TASK_FINE},
    });
    return oTable;
}
