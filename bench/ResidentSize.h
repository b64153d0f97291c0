#pragma once

#include <cstdio>
#include <fstream>
#include <string>

namespace tslbench
{

/// Prints what the program has in memory, and what of it is its own, in KiB.
inline void PrintResidentSize()
{
    int iResident = 0;
    int iOwn = 0;
    std::ifstream oFile("/proc/self/smaps_rollup");
    for (std::string sName; oFile >> sName;)
    {
        int iSize = 0;
        if (sName == "Rss:" && oFile >> iSize)
            iResident = iSize;
        if (sName.rfind("Private_", 0) == 0 && oFile >> iSize)
            iOwn += iSize;
    }
    std::printf("%d %d\n", iResident, iOwn);
}

} // namespace tslbench
