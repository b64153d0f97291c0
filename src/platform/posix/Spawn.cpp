#include "platform/posix/Spawn.h"

#include "platform/posix/Descriptor.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tsl::Platform
{

namespace
{

constexpr int EXIT_CODE_NOT_EXECUTED = 127;

/// The arguments of a command line, in the form that exec takes. There is at least one, the program.
class Arguments
{
public:
    explicit Arguments(std::string_view sCommandLine)
    {
        // Enough for every character of the line and a zero after each argument: the text must not be
        // reallocated, since m_vPointers points into it.
        m_sTexts.reserve(sCommandLine.size() * 2 + 1);
        while (SkipSeparators(sCommandLine))
            TakeArgument(sCommandLine);
        if (m_vPointers.empty())
            m_vPointers.push_back(m_sTexts.data());
        m_vPointers.push_back(nullptr);
    }

    // Not copyable: m_vPointers points into m_sTexts.
    Arguments(Arguments const &) = delete;
    Arguments & operator=(Arguments const &) = delete;

    char ** Get() { return m_vPointers.data(); }
    char const * GetProgram() const { return m_vPointers.front(); }

private:
    static constexpr std::string_view SEPARATORS = " \t\n\v\f\r";

    static bool SkipSeparators(std::string_view & sRest)
    {
        sRest.remove_prefix(std::min(sRest.find_first_not_of(SEPARATORS), sRest.size()));
        return !sRest.empty();
    }

    void TakeArgument(std::string_view & sRest)
    {
        m_vPointers.push_back(m_sTexts.data() + m_sTexts.size());
        std::size_t iUsed = 0;
        for (bool bQuoted = false; iUsed < sRest.size(); ++iUsed)
        {
            char const c = sRest[iUsed];
            if (c == '"')
                bQuoted = !bQuoted;
            else if (!bQuoted && SEPARATORS.find(c) != std::string_view::npos)
                break;
            else
                m_sTexts.push_back(c);
        }
        m_sTexts.push_back('\0');
        sRest.remove_prefix(iUsed);
    }

    std::string m_sTexts;
    std::vector<char *> m_vPointers;
};

/// The streams, signals and flags of a child, for posix_spawn. Keeps the first error.
class SpawnPlan
{
public:
    explicit SpawnPlan(ProcessStart const & oStart)
    {
        ::posix_spawn_file_actions_init(&m_oActions);
        ::posix_spawnattr_init(&m_oAttributes);
        SetStream(oStart.oStreams.oInput, STDIN_FILENO);
        SetStream(oStart.oStreams.oOutput, STDOUT_FILENO);
        SetStream(oStart.oStreams.oErrors, STDERR_FILENO);
        KeepFirstError(::posix_spawn_file_actions_addclosefrom_np(&m_oActions, FIRST_OWN_DESCRIPTOR));

        sigset_t oSignals;
        ::sigemptyset(&oSignals);
        ::posix_spawnattr_setsigmask(&m_oAttributes, &oSignals);
        // Not sigfillset, which leaves out the signals that the runtime library reserves: the child would
        // then ignore them.
        std::memset(&oSignals, 0xFF, sizeof oSignals);
        ::posix_spawnattr_setsigdefault(&m_oAttributes, &oSignals);
        int const iFlags =
            POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | (oStart.bDetached ? POSIX_SPAWN_SETSID : 0);
        KeepFirstError(::posix_spawnattr_setflags(&m_oAttributes, static_cast<short>(iFlags)));
    }

    ~SpawnPlan()
    {
        ::posix_spawnattr_destroy(&m_oAttributes);
        ::posix_spawn_file_actions_destroy(&m_oActions);
    }

    SpawnPlan(SpawnPlan const &) = delete;
    SpawnPlan & operator=(SpawnPlan const &) = delete;

    int Start(Arguments & oArguments, pid_t & iProcess)
    {
        if (m_iError == 0)
            m_iError = ::posix_spawnp(
                &iProcess, oArguments.GetProgram(), &m_oActions, &m_oAttributes, oArguments.Get(), environ);
        return m_iError;
    }

private:
    void SetStream(File const & oEnd, int iStream)
    {
        if (oEnd.IsOpen())
            KeepFirstError(::posix_spawn_file_actions_adddup2(&m_oActions, GetHandle(oEnd), iStream));
    }

    void KeepFirstError(int iError)
    {
        if (m_iError == 0)
            m_iError = iError;
    }

    posix_spawn_file_actions_t m_oActions;
    posix_spawnattr_t m_oAttributes;
    int m_iError = 0;
};

/// Blocks all signals of the calling thread, so that no handler of this program runs in a forked child.
class SignalBlock
{
public:
    SignalBlock()
    {
        sigset_t oAll;
        ::sigfillset(&oAll);
        ::pthread_sigmask(SIG_SETMASK, &oAll, &m_oFormer);
    }
    ~SignalBlock() { ::pthread_sigmask(SIG_SETMASK, &m_oFormer, nullptr); }
    SignalBlock(SignalBlock const &) = delete;
    SignalBlock & operator=(SignalBlock const &) = delete;

private:
    sigset_t m_oFormer;
};

/// Checks, as far as possible beforehand, whether the program of that path can be started. Returns the error
/// number.
int CheckProgram(std::string const & sPath)
{
    struct stat oStatus = {};
    if (::stat(sPath.c_str(), &oStatus) != 0)
        return errno;
    if (!S_ISREG(oStatus.st_mode))
        return EACCES;
    return ::faccessat(AT_FDCWD, sPath.c_str(), X_OK, AT_EACCESS) == 0 ? 0 : errno;
}

/// Searches a program as posix_spawnp does.
int FindProgram(std::string_view sName, std::string & sPath)
{
    sPath = sName;
    if (sName.empty() || sName.find('/') != std::string_view::npos)
        return CheckProgram(sPath);

    char const * const sVariable = std::getenv("PATH");
    std::string_view sRest = sVariable ? sVariable : "/bin:/usr/bin";
    int iError = ENOENT;
    for (bool bMore = true; bMore;)
    {
        std::size_t const iEnd = sRest.find(':');
        bMore = iEnd != std::string_view::npos;
        std::string_view const sFolder = sRest.substr(0, iEnd);
        sPath = sFolder.empty() ? std::string(sName) : std::string(sFolder) + '/' + std::string(sName);
        int const iFound = CheckProgram(sPath);
        if (iFound == 0)
            return 0;
        if (iFound == EACCES)
            iError = EACCES;
        sRest.remove_prefix(bMore ? iEnd + 1 : sRest.size());
    }
    return iError;
}

// The next two run in a forked child, where a thread sanitizer must not take locks of its own, which another thread of
// the parent may have held: it does so in dup2 and in sigaction.

void PutStreamInPlace(File const & oEnd, int iStream)
{
    if (oEnd.IsOpen())
        ::syscall(SYS_dup3, GetHandle(oEnd), iStream, 0);
}

void ResetSignals()
{
    constexpr std::size_t iMaskSize = (NSIG - 1) / 8;
    constexpr char aDefault[128] = {}; // SIG_DFL, no flag and no mask, wherever the system has its fields
    for (int iSignal = 1; iSignal < NSIG; ++iSignal)
        ::syscall(SYS_rt_sigaction, iSignal, aDefault, nullptr, iMaskSize);
    sigset_t oNone;
    ::sigemptyset(&oNone);
    ::sigprocmask(SIG_SETMASK, &oNone, nullptr);
}

/// Runs in the forked child. Only async-signal-safe functions are allowed here, since the parent had threads.
[[noreturn]] void ExecuteSuspended(
    ProcessStart const & oStart, char const * sPath, char ** pArguments, SharedFlag & oContinued)
{
    if (oStart.bDetached)
        ::setsid();
    PutStreamInPlace(oStart.oStreams.oInput, STDIN_FILENO);
    PutStreamInPlace(oStart.oStreams.oOutput, STDOUT_FILENO);
    PutStreamInPlace(oStart.oStreams.oErrors, STDERR_FILENO);
    ::closefrom(FIRST_OWN_DESCRIPTOR);

    ResetSignals();

    ::kill(::getpid(), SIGSTOP);
    if (oContinued.IsMade())
        oContinued.Set();
    ::execve(sPath, pArguments, environ);
    ::_exit(EXIT_CODE_NOT_EXECUTED);
}

} // namespace

int Spawn(ProcessStart const & oStart, int & iProcess)
{
    Arguments oArguments(oStart.sCommandLine);
    return SpawnPlan(oStart).Start(oArguments, iProcess);
}

int SpawnSuspended(ProcessStart const & oStart, SharedFlag & oContinued, int & iProcess)
{
    Arguments oArguments(oStart.sCommandLine);
    std::string sPath;
    if (int const iError = FindProgram(oArguments.GetProgram(), sPath))
        return iError;

    SignalBlock const oScope;
    // _Fork does not run the handlers at fork, which wait for other threads. The child uses nothing that they
    // guard.
    iProcess = ::_Fork();
    if (iProcess == 0)
        ExecuteSuspended(oStart, sPath.c_str(), oArguments.Get(), oContinued);
    if (iProcess < 0)
        return errno;

    // Waits for the stop, since a SIGCONT before it would be lost. The child may also have been killed before
    // it.
    siginfo_t oInfo{};
    while (::waitid(P_PID, static_cast<id_t>(iProcess), &oInfo, WSTOPPED | WEXITED | WNOWAIT) != 0
           && errno == EINTR)
    {
    }
    return 0;
}

} // namespace tsl::Platform
