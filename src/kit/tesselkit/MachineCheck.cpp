#include <tesselkit/MachineCheck.h>

#include "MachineTree.h"

#include <tessel/ErrorCodes.h>
#include <tessel/Task.h>

#include <set>

namespace tsl
{

namespace
{

using Row = MachineTree::Row;
using Place = MachineTree::Place;
using Ids = std::set<int>;

/// The tasks to which the rows lead from the first one.
Ids GetEntered(MachineTree const & oTree)
{
    Ids oEntered{Task::TASK_INIT};
    for (std::size_t iBefore = 0; iBefore < oEntered.size();)
    {
        iBefore = oEntered.size();
        for (Row const & oRow : oTree.vRows)
            if (oEntered.contains(oRow.iSource))
                oEntered.insert(oRow.iDestination);
    }
    return oEntered;
}

/// The tasks from which rows lead to the end of the machine.
Ids GetEnding(MachineTree const & oTree, MachineNames const & oNames)
{
    Ids oEnding{Task::TASK_FINE};
    for (Place const & oPlace : oTree.vPlaces)
        for (int const iResult : oNames.GetResults(oPlace.iTaskId))
            if (iResult == Task::TR_RETURN)
                oEnding.insert(oPlace.iTaskId);
    for (std::size_t iBefore = 0; iBefore < oEnding.size();)
    {
        iBefore = oEnding.size();
        for (Row const & oRow : oTree.vRows)
            if (oEnding.contains(oRow.iDestination))
                oEnding.insert(oRow.iSource);
    }
    return oEnding;
}

/// Collects the faults of a machine and of those inside.
class Checker
{
public:
    explicit Checker(MachineNames const & oNames) : m_oNames(oNames) {}

    void Check(MachineTree const & oTree, String const & sPath)
    {
        m_sPath = sPath;
        Ids const oEntered = GetEntered(oTree);
        if (oEntered.size() == 1)
            Add("The table has no first task.");
        else
        {
            CheckRows(oTree, oEntered);
            CheckResults(oTree, oEntered);
            CheckEnd(oTree, oEntered);
        }

        for (Place const & oPlace : oTree.vPlaces)
            if (oPlace.pMachine && m_oChecked.insert(oPlace.iTaskId).second)
                Check(*oPlace.pMachine, sPath + "/" + oPlace.sName);
    }

    Result GetOutcome(String const & sMachine) const
    {
        if (m_vFaults.empty())
            return Result();

        Result oAll;
        for (auto pFault = m_vFaults.rbegin(); pFault != m_vFaults.rend(); ++pFault)
            oAll.InsertFront(*pFault);
        return Result(ERR::eBadData,
            String("Machine '") + sMachine + "' has " + static_cast<int>(m_vFaults.size())
                + (m_vFaults.size() == 1 ? " fault." : " faults."),
            oAll);
    }

private:
    /// No source place: that of the check says nothing.
    void Add(String const & sText)
    {
        m_vFaults.emplace_back(
            ERR::eBadData, String("Machine '") + m_sPath + "': " + sText, Result::eCategoryFault);
    }

    String GetText(MachineTree const & oTree, Row const & oRow) const
    {
        return String("row (") + oTree.GetTaskText(oRow.iSource) + ", "
               + GetResultText(oRow.iSource, oRow.iResult) + ", " + oTree.GetTaskText(oRow.iDestination)
               + "): ";
    }

    String GetResultText(int iTaskId, int iResult) const
    {
        String const sNumber = iResult == Task::TR_PROCEED ? String("TR_PROCEED") : String() + iResult;
        return m_oNames.GetResult(iTaskId, iResult, sNumber);
    }

    void CheckRows(MachineTree const & oTree, Ids const & oEntered)
    {
        Ids oReported;
        for (Row const & oRow : oTree.vRows)
        {
            Place const * const pPlace = oTree.Find(oRow.iDestination);
            if (!oEntered.contains(oRow.iSource))
                Add(GetText(oTree, oRow) + "The task '" + oTree.GetTaskText(oRow.iSource)
                    + "' is never entered.");
            else if (pPlace && !pPlace->sFailure.IsEmpty() && oReported.insert(oRow.iDestination).second)
                Add(GetText(oTree, oRow) + pPlace->sFailure);

            Place const * const pSource = oTree.Find(oRow.iSource);
            if (pSource && pSource->bMachine && oRow.iResult == Task::TR_PROCEED && pSource == pPlace)
                Add(GetText(oTree, oRow)
                    + "A machine that has ended does not begin again, so the step never ends.");
        }
    }

    void CheckResults(MachineTree const & oTree, Ids const & oEntered)
    {
        for (Place const & oPlace : oTree.vPlaces)
        {
            if (!oEntered.contains(oPlace.iTaskId) || !oPlace.sFailure.IsEmpty())
                continue;
            Ids oWithoutRow = GetResults(oPlace);
            bool const bKnown = !oWithoutRow.empty();
            bool bHasRow = false;
            for (Row const & oRow : oTree.vRows)
                if (oRow.iSource == oPlace.iTaskId)
                {
                    bHasRow = true;
                    oWithoutRow.erase(oRow.iResult);
                }

            oWithoutRow.erase(Task::TR_REMAIN);
            oWithoutRow.erase(Task::TR_RETURN);
            for (int const iResult : oWithoutRow)
                Add(String("The result ") + GetResultText(oPlace.iTaskId, iResult) + " of '" + oPlace.sName
                    + "' has no row.");
            if (!bHasRow && !bKnown)
                Add(String("No result of '") + oPlace.sName + "' has a row.");
        }
    }

    /// What the task is known to return.
    Ids GetResults(Place const & oPlace) const
    {
        std::vector<int> const vNamed = m_oNames.GetResults(oPlace.iTaskId);
        Ids oResults(vNamed.begin(), vNamed.end());
        if (oPlace.bMachine && (!oPlace.pMachine || CanEnd(*oPlace.pMachine)))
            oResults.insert(Task::TR_PROCEED);
        return oResults;
    }

    bool CanEnd(MachineTree const & oTree) const
    {
        return GetEnding(oTree, m_oNames).contains(Task::TASK_INIT);
    }

    void CheckEnd(MachineTree const & oTree, Ids const & oEntered)
    {
        if (!CanEnd(oTree))
            return Add("It cannot end: no rows lead from its first task to TASK_FINE.");

        Ids const oEnding = GetEnding(oTree, m_oNames);
        for (Place const & oPlace : oTree.vPlaces)
            if (oEntered.contains(oPlace.iTaskId) && !oEnding.contains(oPlace.iTaskId)
                && HasRow(oTree, oPlace))
                Add(String("It cannot end any more once it is in '") + oPlace.sName + "'.");
    }

    static bool HasRow(MachineTree const & oTree, Place const & oPlace)
    {
        for (Row const & oRow : oTree.vRows)
            if (oRow.iSource == oPlace.iTaskId)
                return true;
        return false;
    }

    MachineNames const & m_oNames;
    std::vector<Result> m_vFaults;
    Ids m_oChecked; // ids of machines inside
    String m_sPath; // names of the machine that is checked and of those around it
};

} // namespace

Result MachineCheck::Run(TaskProcessor & oMachine, MachineNames const & oNames)
{
    MachineTree const oTree(oMachine, oNames);
    Checker oChecker(oNames);
    oChecker.Check(oTree, oTree.sName);
    return oChecker.GetOutcome(oTree.sName);
}

} // namespace tsl
