#include <tessel/TaskTransition.h>

#include <tessel/ErrorCodes.h>
#include <tessel/String.h>
#include <tessel/Task.h>

#include <iterator>

namespace tsl
{

namespace
{

bool IsOwn(int iId)
{
    return iId >= 0;
}

Result CheckResultId(int iResultId)
{
    if (IsOwn(iResultId) || iResultId == Task::TR_PROCEED)
        return Result();
    return MakeResult(ERR::eBadData,
        String("Transition id '") + iResultId
            + "' is invalid. Use of predefined transition ids other but TR_PROCEED is not allowed."
              " Use own transistion ids > RESERVED_TRANSION_ID_MAX.");
}

Result CheckDestination(int iTaskId)
{
    if (IsOwn(iTaskId) || iTaskId == Task::TASK_FINE)
        return Result();
    return MakeResult(ERR::eBadData,
        String("Id of destination task '") + iTaskId
            + "' is invalid. Use of predefined tasks other but TASK_FINE is not allowed as desination task."
              " Use own task ids > RESERVED_TASK_ID_MAX.");
}

Result CheckSource(int iTaskId, int iResultId)
{
    if (iTaskId == Task::TASK_INIT)
    {
        if (iResultId == Task::TR_PROCEED)
            return Result();
        return MakeResult(ERR::eBadData,
            String("Transition id '") + iResultId
                + "' is invalid. With TASK_INIT as source task, TR_PROCEED is the only allowed transition.");
    }
    if (IsOwn(iTaskId))
        return Result();
    return MakeResult(ERR::eBadData,
        String("Id of source task '") + iTaskId
            + "' is invalid. Use of predefined tasks but TASK_INIT isnot allowed as source task."
              " Use own task ids > RESERVED_TASK_ID_MAX.");
}

/// Looks for a key from the front: tables are short. Null if it is not there.
template<class Entry>
inline Entry const * Find(std::vector<Entry> const & vEntries, int iKey)
{
    for (Entry const & oEntry : vEntries)
        if (oEntry.first == iKey)
            return &oEntry;
    return nullptr;
}

/// The place of a key, which is the number of entries if it is not there.
template<class Entry>
bool FindPlace(std::vector<Entry> const & vEntries, int iKey, unsigned int & iIndex)
{
    Entry const * const pEntry = Find(vEntries, iKey);
    iIndex = static_cast<unsigned int>(pEntry ? pEntry - vEntries.data() : std::ssize(vEntries));
    return pEntry != nullptr;
}

} // namespace

TaskTransition::TaskTransition(int iResultId, int iDestinationTaskId)
    : m_vPairs{{iResultId, iDestinationTaskId}}
{
}

int TaskTransition::GetCount() const
{
    return static_cast<int>(m_vPairs.size());
}

Result TaskTransition::AddTransition(int iResultId, int iDestinationTaskId)
{
    Result oResult = CheckResultId(iResultId);
    if (oResult.IsOk())
        oResult = CheckDestination(iDestinationTaskId);
    if (oResult.IsError())
        return oResult;

    unsigned int iIndex = 0;
    if (FindResult(iResultId, iIndex))
        m_vPairs[iIndex].second = iDestinationTaskId;
    else
        m_vPairs.emplace_back(iResultId, iDestinationTaskId);
    return Result();
}

bool TaskTransition::GetNextTaskId(int iResultId, int & iNextTaskId) const
{
    auto const * const pFound = Find(m_vPairs, iResultId);
    if (!pFound)
        return false;
    iNextTaskId = pFound->second;
    return true;
}

bool TaskTransition::FindResult(int iResultId, unsigned int & iIndex) const
{
    return FindPlace(m_vPairs, iResultId, iIndex);
}

int TaskTransitionList::GetCount() const
{
    return static_cast<int>(m_vTasks.size());
}

Result TaskTransitionList::AddTransition(int iSourceTaskId, int iResultId, int iDestinationTaskId)
{
    Result oResult = CheckSource(iSourceTaskId, iResultId);
    if (oResult.IsError())
        return oResult;

    unsigned int iIndex = 0;
    AddTask(iSourceTaskId, iIndex);
    return m_vTasks[iIndex].second.AddTransition(iResultId, iDestinationTaskId);
}

bool TaskTransitionList::GetNextTaskId(int iSourceTaskId, int iResultId, int & iNextTaskId) const
{
    auto const * const pFound = Find(m_vTasks, iSourceTaskId);
    return pFound && pFound->second.GetNextTaskId(iResultId, iNextTaskId);
}

bool TaskTransitionList::FindTask(int iTaskId, unsigned int & iIndex) const
{
    return FindPlace(m_vTasks, iTaskId, iIndex);
}

void TaskTransitionList::AddTask(int iTaskId, unsigned int & iIndex)
{
    if (!FindTask(iTaskId, iIndex))
        m_vTasks.emplace_back(iTaskId, TaskTransition());
}

} // namespace tsl
