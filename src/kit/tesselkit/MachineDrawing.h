#pragma once

#include <tesselkit/MachineNames.h>

#include <tessel/String.h>

#include <memory>

namespace tsl
{

class TaskProcessor;
struct MachineTree;

/// A picture of a machine as text: a box for each task, a frame for each machine inside, an arrow for each row. The
/// tasks in which the machine is now, from the topmost one down, are highlighted.
///
///     auto * const pCrossing = new Crossing;
///     tsl::TaskContext oContext(pCrossing);
///     oContext.Process();
///     std::cout << tsl::MachineDrawing(*pCrossing, oNames).GetMermaid().s_str();
///
/// A task that is in several tables has a box in each. A machine inside of itself is a box there. An arrow has the name
/// of its result, or its number; Task::TR_PROCEED has only a name that oNames gives it.
class MachineDrawing
{
public:
    /// Reads the tables as they are now. Each task is made with its function in TaskFactory and destroyed again, but
    /// never run. No step of the machine may run meanwhile.
    explicit MachineDrawing(TaskProcessor & oMachine, MachineNames const & oNames = MachineNames());
    ~MachineDrawing();
    MachineDrawing(MachineDrawing const &) = delete;
    MachineDrawing & operator=(MachineDrawing const &) = delete;

    /// A flow chart of Mermaid, and a digraph of Graphviz.
    String GetMermaid() const;
    String GetGraphviz() const;

private:
    std::unique_ptr<MachineTree const> m_pTree;
    MachineNames m_oNames;
};

} // namespace tsl
