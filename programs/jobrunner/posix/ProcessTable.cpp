#include "ProcessTable.h"

#include <cctype>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <map>
#include <mutex>
#include <string>
#include <utility>

#include <dirent.h>
#include <unistd.h>

namespace Processes
{

namespace
{

using Clock = std::chrono::steady_clock;

/// False if the process is gone.
bool ReadEntry(std::string const & sProcess, ProcessEntry & oEntry)
{
    // The name of the program is in brackets and may have some itself.
    std::string sLine;
    std::getline(std::ifstream("/proc/" + sProcess + "/stat"), sLine, '\0');
    std::size_t const iNameEnd = sLine.rfind(')');
    if (iNameEnd == std::string::npos)
        return false;
    char cState = 0;
    oEntry.iProcess = std::stoi(sProcess);
    if (std::sscanf(sLine.c_str() + iNameEnd + 1, " %c %d %d %d", &cState, &oEntry.iParent, &oEntry.iGroup,
            &oEntry.iSession)
        != 4)
        return false;
    oEntry.bEnded = cState == 'Z' || cState == 'X';
    return true;
}

std::map<pid_t, ProcessEntry> ReadAll()
{
    std::map<pid_t, ProcessEntry> oAll;
    std::unique_ptr<DIR, int (*)(DIR *)> const pFolder(::opendir("/proc"), &::closedir);
    if (!pFolder)
        return oAll;
    while (dirent const * const pFile = ::readdir(pFolder.get()))
    {
        ProcessEntry oEntry;
        if (std::isdigit(static_cast<unsigned char>(*pFile->d_name)) && ReadEntry(pFile->d_name, oEntry))
            oAll.emplace(oEntry.iProcess, oEntry);
    }
    return oAll;
}

enum class Place
{
    eBelow,
    eElsewhere,
    eUnknown ///< a process above it has ended before it was read
};

/// Whether the process is below this one, and whose it is then.
Place FindPlace(std::map<pid_t, ProcessEntry> const & oAll, ProcessEntry & oEntry)
{
    pid_t const iOwn = ::getpid();
    ProcessEntry const * pTop = &oEntry;
    // A number that was given to another process while the table was read could make a circle.
    for (std::size_t i = 0; pTop->iParent != iOwn; ++i)
    {
        if (pTop->iParent == 0 || pTop->iProcess == iOwn)
            return Place::eElsewhere;
        auto const oParent = oAll.find(pTop->iParent);
        if (oParent == oAll.end() || i > oAll.size())
            return Place::eUnknown;
        pTop = &oParent->second;
    }
    oEntry.iJob = pTop->iSession;
    return Place::eBelow;
}

std::shared_ptr<ProcessTable const> ReadTable()
{
    std::map<pid_t, ProcessEntry> const oAll = ReadAll();
    auto pTable = std::make_shared<ProcessTable>();
    for (auto [iProcess, oEntry] : oAll)
    {
        Place const ePlace = FindPlace(oAll, oEntry);
        if (ePlace == Place::eBelow)
            pTable->vEntries.push_back(oEntry);
        pTable->bComplete = pTable->bComplete && ePlace != Place::eUnknown;
    }
    return pTable;
}

} // namespace

std::shared_ptr<ProcessTable const> ReadProcessTable()
{
    static std::mutex s_oLock;
    static std::shared_ptr<ProcessTable const> s_pTable;
    static Clock::time_point s_oBegin;

    Clock::time_point const oCalled = Clock::now();
    std::lock_guard const oScope(s_oLock);
    if (!s_pTable || s_oBegin < oCalled)
    {
        s_oBegin = Clock::now();
        s_pTable = ReadTable();
    }
    return s_pTable;
}

} // namespace Processes
