#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace tslbench
{

/// The path of a program that a benchmark starts as its child. It is in the folder of the benchmark's own program,
/// or in the one that the environment variable TESSEL_BENCH_PROGRAMS names.
inline std::string FindChild(char const * sName)
{
    if (char const * const sFolder = std::getenv("TESSEL_BENCH_PROGRAMS"))
        return std::string(sFolder) + '/' + sName;
    return std::filesystem::read_symlink("/proc/self/exe").parent_path() / sName;
}

} // namespace tslbench
