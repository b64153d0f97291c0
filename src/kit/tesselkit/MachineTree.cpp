#include "MachineTree.h"

#include <tessel/Exception.h>
#include <tessel/TaskFactory.h>
#include <tessel/TaskProcessor.h>
#include <tessel/TaskTransition.h>

#include <algorithm>
#include <exception>

namespace tsl
{

namespace
{

/// Makes a task. sFailure becomes the reason why it is none of that id, or stays empty.
std::unique_ptr<Task> MakeTask(int iTaskId, TaskProcessor & oMachine, String & sFailure)
{
    std::unique_ptr<Task> pTask;
    try
    {
        pTask.reset(TaskFactory::Instance().CreateProduct(iTaskId, TaskCreator(&oMachine)));
    }
    catch (Exception const & oException)
    {
        sFailure = String("Its function throws: ") + oException.GetText();
        return nullptr;
    }
    catch (std::exception const & oException)
    {
        sFailure = String("Its function throws: ") + oException.what();
        return nullptr;
    }

    // A function may return the current task again, which the machine still owns.
    if (pTask.get() == oMachine.GetCurrentTask())
        static_cast<void>(pTask.release());

    if (!pTask)
        sFailure = TaskFactory::Instance().IsRegistered(iTaskId) ? "Its function makes no task."
                                                                 : "No task is registered under its id.";
    else if (pTask->GetTaskID() != iTaskId)
        sFailure = String("The task that is made for it has the id ") + pTask->GetTaskID() + ".";
    return pTask;
}

} // namespace

/// Reads one topmost machine.
class MachineTree::Reader
{
public:
    explicit Reader(MachineNames const & oNames) : m_oNames(oNames) {}

    /// pRunning is the machine whose current task counts: oMachine, the one of the same place that runs, or null.
    void Read(MachineTree & oTree, TaskProcessor & oMachine, TaskProcessor const * pRunning)
    {
        m_vMachineIds.push_back(oMachine.GetTaskID());
        oTree.sName = m_oNames.GetTask(oMachine.GetTaskID(), oMachine.GetTaskName());
        Task const * const pCurrent = pRunning ? pRunning->GetCurrentTask() : nullptr;
        oTree.bEnded = pCurrent && pCurrent->GetTaskID() == Task::TASK_FINE;

        for (auto const & [iSource, oTransitions] : oMachine.GetTaskTransitionList().GetTasks())
        {
            AddPlace(oTree, iSource, oMachine, pCurrent);
            for (auto const & [iResult, iDestination] : oTransitions.GetPairs())
            {
                oTree.vRows.push_back({iSource, iResult, iDestination});
                AddPlace(oTree, iDestination, oMachine, pCurrent);
            }
        }
        m_vMachineIds.pop_back();
    }

private:
    void AddPlace(MachineTree & oTree, int iTaskId, TaskProcessor & oMachine, Task const * pCurrent)
    {
        if (iTaskId < 0 || oTree.Find(iTaskId))
            return;

        Place oPlace;
        oPlace.iTaskId = iTaskId;
        std::unique_ptr<Task> const pTask = MakeTask(iTaskId, oMachine, oPlace.sFailure);
        oPlace.sName = m_oNames.GetTask(iTaskId, pTask ? pTask->GetTaskName() : String() + iTaskId);
        oPlace.bRunning = pCurrent && pCurrent->GetTaskID() == iTaskId;

        auto * const pMachine = dynamic_cast<TaskProcessor *>(pTask.get());
        oPlace.bMachine = pMachine != nullptr;
        if (pMachine && std::ranges::find(m_vMachineIds, iTaskId) == m_vMachineIds.end())
        {
            oPlace.pMachine.reset(new MachineTree);
            Read(*oPlace.pMachine, *pMachine,
                oPlace.bRunning ? dynamic_cast<TaskProcessor const *>(pCurrent) : nullptr);
        }
        oTree.vPlaces.push_back(std::move(oPlace));
    }

    MachineNames const & m_oNames;

    // Of the machine that is read, and of those around it.
    std::vector<int> m_vMachineIds;
};

MachineTree::MachineTree(TaskProcessor & oMachine, MachineNames const & oNames)
{
    Reader(oNames).Read(*this, oMachine, &oMachine);
}

bool MachineTree::HasEnd() const
{
    return std::ranges::any_of(vRows, [](Row const & oRow) { return oRow.iDestination == Task::TASK_FINE; });
}

MachineTree::Place const * MachineTree::Find(int iTaskId) const
{
    auto const oFound = std::ranges::find(vPlaces, iTaskId, &Place::iTaskId);
    return oFound == vPlaces.end() ? nullptr : &*oFound;
}

String MachineTree::GetTaskText(int iTaskId) const
{
    if (iTaskId == Task::TASK_INIT)
        return "TASK_INIT";
    if (iTaskId == Task::TASK_FINE)
        return "TASK_FINE";
    return Find(iTaskId)->sName;
}

} // namespace tsl
