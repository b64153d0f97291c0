#pragma once

#include <cstdio>
#include <fstream>
#include <string>

namespace tslbench
{

/// Prints the resident memory of the program, and the part that it does not share, in KiB.
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
