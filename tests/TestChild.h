#pragma once

#include <tessel/Tessel.h>

#include <filesystem>
#include <iterator>
#include <memory>
#include <new>
#include <string>

#include <signal.h>
#include <sys/wait.h>

namespace tsltest
{

constexpr int WITH_READERS = tsl::CmdLine::eModeRedirect | tsl::CmdLine::eModeReaderThreads;

// In quotes: the project may be built in a folder with a blank in its path.
inline std::string const CHILD = "\"" TESSEL_TEST_PROGRAMS "/Child\"";

/// A child that does what the actions say, see tests/programs/Child.c. In the end it is killed and nothing of it
/// left, even if there is no memory.
class Child : public tsl::CmdLine
{
public:
    explicit Child(std::string const & sActions, int iMode = eModeRedirect)
    {
        SetMode(iMode);
        SetCommand(CHILD + ' ' + sActions);
    }
    ~Child() override
    {
        for (bool bEnded = false; !bEnded; bEnded = WaitTermination() != eWaitTimeout)
            try
            {
                static_cast<void>(Kill(0));
            }
            catch (std::bad_alloc const &)
            {
                if (iProcessId > 0)
                    ::kill(iProcessId, SIGKILL);
            }
    }

    int iProcessId = -1;
};

/// What the child has written by now, taken line by line.
inline std::string TakeLines(tsl::CmdLine & oChild, tsl::String * (tsl::CmdLine::*fReceive)())
{
    std::string sText;
    while (std::unique_ptr<tsl::String> const pLine{(oChild.*fReceive)()})
        sText += pLine->s_str() + '\n';
    return sText;
}

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
