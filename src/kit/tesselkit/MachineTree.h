#pragma once

#include <tesselkit/MachineNames.h>

#include <tessel/String.h>

#include <memory>
#include <vector>

namespace tsl
{

class TaskProcessor;

/// A machine as its table and the task factory show it, with the machines inside. Not installed.
struct MachineTree
{
    struct Row
    {
        int iSource;
        int iResult;
        int iDestination;
    };

    /// A task of the table.
    struct Place
    {
        int iTaskId = 0;
        String sName;
        bool bRunning = false; // the current task of the machine

        String sFailure; // why the factory makes no such task; empty if it does

        // Of a task that is a machine; null also if one of the machines around it has the same id.
        std::unique_ptr<MachineTree> pMachine;
        bool bMachine = false;
    };

    /// Makes and destroys each task of the machine and of those inside, but runs none.
    MachineTree(TaskProcessor & oMachine, MachineNames const & oNames);

    /// Whether there is a row to Task::TASK_FINE.
    bool HasEnd() const;

    /// Null for Task::TASK_INIT and Task::TASK_FINE.
    Place const * Find(int iTaskId) const;

    String GetTaskText(int iTaskId) const;

    String sName;
    std::vector<Row> vRows;
    std::vector<Place> vPlaces; // in the order in which the table names them
    bool bEnded = false;        // the last step has ended it

private:
    class Reader;
    MachineTree() = default;
};

} // namespace tsl
