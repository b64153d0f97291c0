#pragma once

#include "CrossingIds.h"

#include <tessel/TaskProcessor.h>
#include <tessel/TaskTransition.h>
#include <tesselkit/MachineNames.h>

/// Registers the tasks of the crossing with the factory. Call it once, before the first step.
void RegisterCrossing();

/// What a picture shows at the arrows. The tasks have their own names.
tsl::MachineNames GetCrossingNames();

/// The whole crossing: by day and by night a machine of its own, with the mode switch in between.
class Crossing : public tsl::TaskProcessor
{
public:
    Crossing() : TaskProcessor("Crossing", nullptr) {}

    int GetTaskID() const override { return TASK_CROSSING; }
    tsl::TaskTransitionList const & GetTaskTransitionList() const override;
};

/// Red, red with amber, green, amber and so on. Only red can leave it.
class DayMachine : public tsl::TaskProcessor
{
public:
    explicit DayMachine(tsl::TaskProcessor * pParent) : TaskProcessor("Day", pParent) {}

    int GetTaskID() const override { return TASK_DAY; }
    tsl::TaskTransitionList const & GetTaskTransitionList() const override;
};

/// Flashes amber. It can be left at any time.
class NightMachine : public tsl::TaskProcessor
{
public:
    explicit NightMachine(tsl::TaskProcessor * pParent) : TaskProcessor("Night", pParent) {}

    int GetTaskID() const override { return TASK_NIGHT; }
    tsl::TaskTransitionList const & GetTaskTransitionList() const override;
};
