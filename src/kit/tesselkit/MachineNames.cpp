#include <tesselkit/MachineNames.h>

namespace tsl
{

namespace
{

String Get(std::map<int, String> const & oNames, int iId, String const & sDefault)
{
    auto const oFound = oNames.find(iId);
    return oFound == oNames.end() ? sDefault : oFound->second;
}

} // namespace

void MachineNames::AddTask(int iTaskId, String const & sName)
{
    m_oTasks.insert_or_assign(iTaskId, sName);
}

void MachineNames::AddResult(int iTaskId, int iResultId, String const & sName)
{
    m_oResults[iTaskId].insert_or_assign(iResultId, sName);
}

String MachineNames::GetTask(int iTaskId, String const & sDefault) const
{
    return Get(m_oTasks, iTaskId, sDefault);
}

String MachineNames::GetResult(int iTaskId, int iResultId, String const & sDefault) const
{
    auto const oFound = m_oResults.find(iTaskId);
    return oFound == m_oResults.end() ? sDefault : Get(oFound->second, iResultId, sDefault);
}

std::vector<int> MachineNames::GetResults(int iTaskId) const
{
    std::vector<int> vResults;
    if (auto const oFound = m_oResults.find(iTaskId); oFound != m_oResults.end())
        for (auto const & [iResultId, sName] : oFound->second)
            vResults.push_back(iResultId);
    return vResults;
}

} // namespace tsl
