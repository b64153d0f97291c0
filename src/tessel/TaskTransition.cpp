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

using Places = std::unordered_map<int, unsigned int>;

// A table of up to this many entries is searched from the front, which is faster than a hash table (R05).
constexpr std::size_t FEW = 8;

template<class Entry>
inline Entry const * FindInFew(std::vector<Entry> const & vEntries, int iKey)
{
    for (Entry const & oEntry : vEntries)
        if (oEntry.first == iKey)
            return &oEntry;
    return nullptr;
}

/// Returns the entry of a key, or null.
template<class Entry>
Entry const * Find(std::vector<Entry> const & vEntries, Places const & oPlaces, int iKey)
{
    if (oPlaces.empty())
        return FindInFew(vEntries, iKey);
    auto const oPlace = oPlaces.find(iKey);
    return oPlace == oPlaces.end() ? nullptr : &vEntries[oPlace->second];
}

// Lookups in long tables are functions of their own, whose results the callers return as they are: a lookup in a
// short table then needs no stack frame (R05).

using Pair = std::pair<int, int>;
using Row = std::pair<int, TaskTransition>;

[[gnu::noinline]] bool GetFromMany(
    std::vector<Pair> const & vPairs, Places const & oPlaces, int iResultId, int & iNextTaskId)
{
    Pair const * const pFound = Find(vPairs, oPlaces, iResultId);
    if (pFound)
        iNextTaskId = pFound->second;
    return pFound != nullptr;
}

[[gnu::noinline]] bool GetFromMany(std::vector<Row> const & vRows, Places const & oPlaces, int iSourceTaskId,
    int iResultId, int & iNextTaskId)
{
    Row const * const pFound = Find(vRows, oPlaces, iSourceTaskId);
    return pFound && pFound->second.GetNextTaskId(iResultId, iNextTaskId);
}

/// Returns whether the key is there. iIndex becomes its index, or the number of entries.
template<class Entry>
bool FindPlace(std::vector<Entry> const & vEntries, Places const & oPlaces, int iKey, unsigned int & iIndex)
{
    Entry const * const pEntry = Find(vEntries, oPlaces, iKey);
    iIndex = static_cast<unsigned int>(pEntry ? pEntry - vEntries.data() : std::ssize(vEntries));
    return pEntry != nullptr;
}

/// Adds an entry with a new key.
template<class Entry>
void Add(std::vector<Entry> & vEntries, Places & oPlaces, Entry && oEntry)
{
    vEntries.push_back(std::move(oEntry));
    if (vEntries.size() > FEW)
        for (std::size_t i = oPlaces.size(); i < vEntries.size(); ++i)
            oPlaces.emplace(vEntries[i].first, static_cast<unsigned int>(i));
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
        Add(m_vPairs, m_oPlaces, {iResultId, iDestinationTaskId});
    return Result();
}

bool TaskTransition::GetNextTaskId(int iResultId, int & iNextTaskId) const
{
    if (!m_oPlaces.empty()) [[unlikely]]
        return GetFromMany(m_vPairs, m_oPlaces, iResultId, iNextTaskId);

    Pair const * const pFound = FindInFew(m_vPairs, iResultId);
    if (!pFound)
        return false;
    iNextTaskId = pFound->second;
    return true;
}

bool TaskTransition::FindResult(int iResultId, unsigned int & iIndex) const
{
    return FindPlace(m_vPairs, m_oPlaces, iResultId, iIndex);
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
    if (!m_oPlaces.empty()) [[unlikely]]
        return GetFromMany(m_vTasks, m_oPlaces, iSourceTaskId, iResultId, iNextTaskId);

    Row const * const pFound = FindInFew(m_vTasks, iSourceTaskId);
    return pFound && pFound->second.GetNextTaskId(iResultId, iNextTaskId);
}

bool TaskTransitionList::FindTask(int iTaskId, unsigned int & iIndex) const
{
    return FindPlace(m_vTasks, m_oPlaces, iTaskId, iIndex);
}

void TaskTransitionList::AddTask(int iTaskId, unsigned int & iIndex)
{
    if (!FindTask(iTaskId, iIndex))
        Add(m_vTasks, m_oPlaces, {iTaskId, TaskTransition()});
}

} // namespace tsl
