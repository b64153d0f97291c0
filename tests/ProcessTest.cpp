#include "ProcessTest.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tsltest
{
namespace
{

int Check(long iNumber, char const * sWhat)
{
    if (iNumber < 0)
        throw std::system_error(errno, std::generic_category(), sWhat);
    return static_cast<int>(iNumber);
}

/// Takes one stream of a program. A file in memory, since a pipe would have to be emptied all the time
/// and stays open for as long as the program's own children hold it.
class StreamFile
{
public:
    ~StreamFile() { ::close(m_iNumber); }

    int Get() const { return m_iNumber; }

    std::string Read() const
    {
        std::string sText(static_cast<std::size_t>(::lseek(m_iNumber, 0, SEEK_END)), '\0');
        sText.resize(
            static_cast<std::size_t>(Check(::pread(m_iNumber, sText.data(), sText.size(), 0), "pread")));
        return sText;
    }

private:
    int const m_iNumber = Check(::memfd_create("stream", MFD_CLOEXEC), "memfd_create");
};

std::vector<char *> GetPointers(std::vector<std::string> & vTexts)
{
    std::vector<char *> vPointers;
    for (std::string & sText : vTexts)
        vPointers.push_back(sText.data());
    vPointers.push_back(nullptr);
    return vPointers;
}

pid_t Start(std::filesystem::path const & oProgram, std::filesystem::path const & oFolder,
    StreamFile const & oOutput, StreamFile const & oErrors, std::vector<std::string> vArguments,
    std::vector<std::string> vEnvironment)
{
    posix_spawn_file_actions_t oActions;
    ::posix_spawn_file_actions_init(&oActions);
    ::posix_spawn_file_actions_addchdir_np(&oActions, oFolder.c_str());
    ::posix_spawn_file_actions_addopen(&oActions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_adddup2(&oActions, oOutput.Get(), STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&oActions, oErrors.Get(), STDERR_FILENO);
    posix_spawnattr_t oAttributes;
    ::posix_spawnattr_init(&oAttributes);
    ::posix_spawnattr_setflags(&oAttributes, POSIX_SPAWN_SETPGROUP);

    vArguments.insert(vArguments.begin(), oProgram.filename().string());
    pid_t iProcess = 0;
    errno = ::posix_spawn(&iProcess, oProgram.c_str(), &oActions, &oAttributes,
        GetPointers(vArguments).data(), GetPointers(vEnvironment).data());
    Check(-errno, oProgram.c_str());
    ::posix_spawnattr_destroy(&oAttributes);
    ::posix_spawn_file_actions_destroy(&oActions);
    return iProcess;
}

} // namespace

TestProgram::TestProgram(std::string const & sName)
    : m_oProgram(std::filesystem::path(TESSEL_TEST_PROGRAMS) / sName)
{
    for (char ** ppVariable = environ; *ppVariable != nullptr; ++ppVariable)
        m_vEnvironment.emplace_back(*ppVariable);
}

void TestProgram::SetEnvironment(std::string const & sName, std::string const & sValue)
{
    std::erase_if(m_vEnvironment, [&](std::string const & s) { return s.starts_with(sName + '='); });
    m_vEnvironment.push_back(sName + '=' + sValue);
}

ProgramOutcome TestProgram::Run(
    std::vector<std::string> const & vArguments, std::chrono::milliseconds iLimit) const
{
    return Run(vArguments, iLimit, [](int) {});
}

ProgramOutcome TestProgram::RunToSignal(int iSignal, std::function<bool()> const & fIsTime) const
{
    // The sanitizer of threads loses a signal that comes while a thread is about to block for the first time.
    constexpr bool bMayBeLost = std::string_view(TESSEL_SANITIZE) == "thread";

    using Clock = std::chrono::steady_clock;
    auto oNext = Clock::time_point::min();
    return Run({}, std::chrono::seconds(60),
        [&](int iProcess)
        {
            if (Clock::now() < oNext || !fIsTime())
                return;
            ::kill(iProcess, iSignal);
            oNext = bMayBeLost ? Clock::now() + std::chrono::seconds(1) : Clock::time_point::max();
        });
}

ProgramOutcome TestProgram::Run(std::vector<std::string> const & vArguments, std::chrono::milliseconds iLimit,
    std::function<void(int)> const & fLook) const
{
    StreamFile const oOutput;
    StreamFile const oErrors;
    pid_t const iProcess = Start(m_oProgram, GetPath(), oOutput, oErrors, vArguments, m_vEnvironment);
    ProgramOutcome oOutcome;
    int iStatus = 0;
    auto const oDeadline = std::chrono::steady_clock::now() + iLimit;
    while (Check(::waitpid(iProcess, &iStatus, WNOHANG), "waitpid") == 0)
    {
        oOutcome.bTimedOut = std::chrono::steady_clock::now() > oDeadline;
        if (oOutcome.bTimedOut)
            ::kill(-iProcess, SIGKILL);
        fLook(iProcess);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    if (WIFEXITED(iStatus))
        oOutcome.iExitCode = WEXITSTATUS(iStatus);
    oOutcome.sOutput = oOutput.Read();
    oOutcome.sErrors = oErrors.Read();
    return oOutcome;
}

} // namespace tsltest
