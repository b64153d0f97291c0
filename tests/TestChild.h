#pragma once

#include <tesselkit/ScriptedChild.h>

#include <tessel/Tessel.h>

#include <filesystem>
#include <iterator>
#include <string>

#include <sys/wait.h>

namespace tsltest
{

constexpr int WITH_READERS = tsl::CmdLine::eModeRedirect | tsl::CmdLine::eModeReaderThreads;

// In quotes: the project may be built in a folder with a blank in its path.
inline std::string const CHILD = "\"" TESSEL_TEST_PROGRAMS "/Child\"";

/// A child that knows the actions of tests/programs/Child.cpp as well.
class Child : public tsl::ScriptedChild
{
public:
    explicit Child(std::string const & sScript, int iMode = eModeRedirect)
        : ScriptedChild(TESSEL_TEST_PROGRAMS "/Child", sScript, iMode)
    {
    }
};

inline std::size_t CountEntries(char const * sFolder)
{
    std::filesystem::directory_iterator const oFirst(sFolder);
    return static_cast<std::size_t>(std::distance(begin(oFirst), end(oFirst)));
}

/// Whether this process has a child, also one that has ended.
inline bool HasChildren()
{
    siginfo_t oInfo{};
    return ::waitid(P_ALL, 0, &oInfo, WEXITED | WNOHANG | WNOWAIT) == 0;
}

} // namespace tsltest
