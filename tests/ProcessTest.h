#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tsltest
{

/// How a program ended, and what it printed.
struct ProgramOutcome
{
    int iExitCode = -1;     ///< -1 if a signal ended the program
    bool bTimedOut = false; ///< The program ran past its limit and was killed, with all of its children.
    std::string sOutput;
    std::string sErrors;
};

/// A program of tests/programs and a temporary folder of its own, in which it runs.
///
/// The folder begins empty, is the program's current directory in every run and is removed with the
/// object. Separate objects are independent of each other, also on several threads. Whatever the operating
/// system refuses is thrown as std::system_error.
class TestProgram
{
public:
    /// sName is the program's file without the ending, or the absolute path of any other program.
    explicit TestProgram(std::string const & sName);
    ~TestProgram();
    TestProgram(TestProgram const &) = delete;
    TestProgram & operator=(TestProgram const &) = delete;

    /// Sets a variable for the runs to come, which otherwise have the environment of the test.
    void SetEnvironment(std::string const & sName, std::string const & sValue);

    /// Runs the program to its end, with nothing on its standard input, in a process group of its own. As
    /// argument 0 it sees its name without a folder, like a program that was found in the search path.
    ProgramOutcome Run(std::vector<std::string> const & vArguments = {},
        std::chrono::milliseconds iLimit = std::chrono::seconds(60)) const;

    /// Runs the program likewise, and sends it the signal as soon as the condition holds.
    ProgramOutcome RunToSignal(int iSignal, std::function<bool()> const & fIsTime) const;

    std::filesystem::path const & GetFolder() const { return m_oFolder; }

    /// Files of the folder. A file that is not there reads as empty.
    void WriteFile(std::string const & sName, std::string_view sContent) const;
    std::string ReadFile(std::string const & sName) const;
    bool HasFile(std::string const & sName) const;

private:
    /// Calls fLook every millisecond with the number of the process.
    ProgramOutcome Run(std::vector<std::string> const & vArguments, std::chrono::milliseconds iLimit,
        std::function<void(int)> const & fLook) const;

    std::filesystem::path m_oProgram;
    std::filesystem::path m_oFolder;
    std::vector<std::string> m_vEnvironment;
};

/// The program's log with each timestamp as "T ", and process and thread id as "P ".
std::string ReadLog(TestProgram const & oProgram);

} // namespace tsltest
