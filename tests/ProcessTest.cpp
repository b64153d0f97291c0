#include "ProcessTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tsltest
{
namespace
{

[[noreturn]] void ThrowError(int iError, char const * pWhat)
{
    throw std::system_error(iError, std::generic_category(), pWhat);
}

int CheckNumber(long iNumber, char const * pWhat)
{
    if (iNumber < 0)
        ThrowError(errno, pWhat);
    return static_cast<int>(iNumber);
}

void CheckError(int iError, char const * pWhat)
{
    if (iError != 0)
        ThrowError(iError, pWhat);
}

class Descriptor
{
public:
    explicit Descriptor(int iNumber) : m_iNumber(iNumber) {}
    ~Descriptor() { ::close(m_iNumber); }
    Descriptor(Descriptor const &) = delete;
    Descriptor & operator=(Descriptor const &) = delete;

    int Get() const { return m_iNumber; }

private:
    int m_iNumber;
};

/// Takes one stream of a program. A file in memory, since a pipe would have to be emptied all the time
/// and stays open for as long as the program's own children hold it.
class StreamFile
{
public:
    StreamFile() : m_oFile(CheckNumber(::memfd_create("stream", MFD_CLOEXEC), "memfd_create")) {}

    int GetDescriptor() const { return m_oFile.Get(); }

    std::string Read() const
    {
        auto const iSize = static_cast<std::size_t>(::lseek(m_oFile.Get(), 0, SEEK_END));
        std::string sText(iSize, '\0');
        sText.resize(
            static_cast<std::size_t>(CheckNumber(::pread(m_oFile.Get(), sText.data(), iSize, 0), "pread")));
        return sText;
    }

private:
    Descriptor m_oFile;
};

/// What happens between fork and exec.
class SpawnPlan
{
public:
    SpawnPlan()
    {
        CheckError(::posix_spawn_file_actions_init(&m_oActions), "posix_spawn_file_actions_init");
        CheckError(::posix_spawnattr_init(&m_oAttributes), "posix_spawnattr_init");
        CheckError(
            ::posix_spawnattr_setflags(&m_oAttributes, POSIX_SPAWN_SETPGROUP), "posix_spawnattr_setflags");
    }

    ~SpawnPlan()
    {
        ::posix_spawnattr_destroy(&m_oAttributes);
        ::posix_spawn_file_actions_destroy(&m_oActions);
    }

    SpawnPlan(SpawnPlan const &) = delete;
    SpawnPlan & operator=(SpawnPlan const &) = delete;

    void ChangeFolder(std::filesystem::path const & oFolder)
    {
        CheckError(::posix_spawn_file_actions_addchdir_np(&m_oActions, oFolder.c_str()), "addchdir");
    }

    void SetStreams(StreamFile const & oOutput, StreamFile const & oErrors)
    {
        CheckError(::posix_spawn_file_actions_addopen(&m_oActions, STDIN_FILENO, "/dev/null", O_RDONLY, 0),
            "addopen");
        CheckError(::posix_spawn_file_actions_adddup2(&m_oActions, oOutput.GetDescriptor(), STDOUT_FILENO),
            "adddup2");
        CheckError(::posix_spawn_file_actions_adddup2(&m_oActions, oErrors.GetDescriptor(), STDERR_FILENO),
            "adddup2");
    }

    pid_t Start(std::filesystem::path const & oProgram, std::vector<std::string> vArguments,
        std::vector<std::string> vEnvironment) const
    {
        pid_t iProcess = 0;
        int const iError = ::posix_spawn(&iProcess, oProgram.c_str(), &m_oActions, &m_oAttributes,
            GetPointers(vArguments).data(), GetPointers(vEnvironment).data());
        CheckError(iError, oProgram.c_str());
        return iProcess;
    }

private:
    static std::vector<char *> GetPointers(std::vector<std::string> & vTexts)
    {
        std::vector<char *> vPointers;
        for (std::string & sText : vTexts)
            vPointers.push_back(sText.data());
        vPointers.push_back(nullptr);
        return vPointers;
    }

    posix_spawn_file_actions_t m_oActions;
    posix_spawnattr_t m_oAttributes;
};

/// False if the process still runs when the limit is over.
bool WaitForEnd(pid_t iProcess, std::chrono::milliseconds iLimit)
{
    Descriptor const oHandle(CheckNumber(::syscall(SYS_pidfd_open, iProcess, 0), "pidfd_open"));
    auto const iDeadline = std::chrono::steady_clock::now() + iLimit;
    for (;;)
    {
        auto const iRest =
            std::chrono::ceil<std::chrono::milliseconds>(iDeadline - std::chrono::steady_clock::now());
        pollfd oPoll = {oHandle.Get(), POLLIN, 0};
        int const iReady = ::poll(&oPoll, 1, static_cast<int>(std::max<std::int64_t>(iRest.count(), 0)));
        if (iReady >= 0)
            return iReady > 0;
        if (errno != EINTR)
            ThrowError(errno, "poll");
    }
}

int Reap(pid_t iProcess)
{
    int iStatus = 0;
    while (::waitpid(iProcess, &iStatus, 0) < 0)
    {
        if (errno != EINTR)
            ThrowError(errno, "waitpid");
    }
    return iStatus;
}

std::filesystem::path MakeFolder()
{
    std::string sTemplate = (std::filesystem::temp_directory_path() / "tessel-test-XXXXXX").string();
    if (::mkdtemp(sTemplate.data()) == nullptr)
        ThrowError(errno, sTemplate.c_str());
    return sTemplate;
}

std::vector<std::string> GetEnvironment()
{
    std::vector<std::string> vVariables;
    for (char ** ppVariable = environ; *ppVariable != nullptr; ++ppVariable)
        vVariables.emplace_back(*ppVariable);
    return vVariables;
}

} // namespace

TestProgram::TestProgram(std::string const & sName)
    : m_oProgram(std::filesystem::path(TESSEL_TEST_PROGRAMS) / sName),
      m_oFolder(MakeFolder()),
      m_vEnvironment(GetEnvironment())
{
}

TestProgram::~TestProgram()
{
    std::error_code oIgnored; // A folder that stays behind is no reason to fail a test.
    std::filesystem::remove_all(m_oFolder, oIgnored);
}

void TestProgram::SetEnvironment(std::string const & sName, std::string const & sValue)
{
    RemoveEnvironment(sName);
    m_vEnvironment.push_back(sName + '=' + sValue);
}

void TestProgram::RemoveEnvironment(std::string const & sName)
{
    std::erase_if(
        m_vEnvironment, [&](std::string const & sVariable) { return sVariable.starts_with(sName + '='); });
}

ProgramOutcome TestProgram::Run(
    std::vector<std::string> const & vArguments, std::chrono::milliseconds iLimit) const
{
    StreamFile const oOutput;
    StreamFile const oErrors;
    SpawnPlan oPlan;
    oPlan.ChangeFolder(m_oFolder);
    oPlan.SetStreams(oOutput, oErrors);

    std::vector<std::string> vAll = {m_oProgram.filename().string()};
    vAll.insert(vAll.end(), vArguments.begin(), vArguments.end());
    ProgramOutcome oOutcome;
    pid_t const iProcess = oPlan.Start(m_oProgram, vAll, m_vEnvironment);
    oOutcome.bTimedOut = !WaitForEnd(iProcess, iLimit);
    if (oOutcome.bTimedOut)
        ::kill(-iProcess, SIGKILL);

    int const iStatus = Reap(iProcess);
    if (WIFEXITED(iStatus))
        oOutcome.iExitCode = WEXITSTATUS(iStatus);
    else
        oOutcome.iSignal = WTERMSIG(iStatus);
    oOutcome.sOutput = oOutput.Read();
    oOutcome.sErrors = oErrors.Read();
    return oOutcome;
}

void TestProgram::WriteFile(std::string const & sName, std::string_view sContent) const
{
    std::ofstream oFile(m_oFolder / sName, std::ios::binary | std::ios::trunc);
    oFile.write(sContent.data(), static_cast<std::streamsize>(sContent.size()));
    oFile.close();
    if (!oFile)
        ThrowError(EIO, sName.c_str());
}

std::string TestProgram::ReadFile(std::string const & sName) const
{
    std::ifstream oFile(m_oFolder / sName, std::ios::binary);
    return {std::istreambuf_iterator<char>(oFile), {}};
}

bool TestProgram::HasFile(std::string const & sName) const
{
    return std::filesystem::exists(m_oFolder / sName);
}

} // namespace tsltest

namespace
{

TEST(TestPrograms, ShowHowTheyEndedAndWhatTheyLeft)
{
    tsltest::TestProgram oProgram("Probe");
    oProgram.SetEnvironment("TESSEL_PROBE", "first");
    oProgram.SetEnvironment("TESSEL_PROBE", "second");
    oProgram.WriteFile("input", "content");

    tsltest::ProgramOutcome const oOutcome = oProgram.Run({"report", "an argument", ""});
    EXPECT_EQ(oOutcome.iExitCode, 3);
    EXPECT_EQ(oOutcome.iSignal, 0);
    EXPECT_EQ(oOutcome.sOutput, "second\nProbe\nreport\nan argument\n\n");
    EXPECT_EQ(oOutcome.sErrors, "nothing on standard input\n");
    EXPECT_EQ(oProgram.ReadFile("output"), "content");

    oProgram.RemoveEnvironment("TESSEL_PROBE");
    EXPECT_EQ(oProgram.Run({"report"}).sOutput, "\nProbe\nreport\n");
}

TEST(TestPrograms, AreKilledWhenTheirTimeIsOver)
{
    tsltest::TestProgram const oProgram("Probe");
    tsltest::ProgramOutcome const oOutcome = oProgram.Run({"hang"}, std::chrono::milliseconds(200));
    EXPECT_TRUE(oOutcome.bTimedOut);
    EXPECT_EQ(oOutcome.iSignal, SIGKILL);
    EXPECT_EQ(oOutcome.iExitCode, -1);
}

} // namespace
