#pragma once

#include <tesselkit/TestFolder.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
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

/// A program of tests/programs in a folder of its own, which is its current directory in every run. Whatever the
/// operating system refuses is thrown as std::system_error.
class TestProgram : public tsl::TestFolder
{
public:
    /// sName is the program's file without the ending, or the absolute path of any other program.
    explicit TestProgram(std::string const & sName);

    /// Sets a variable for the runs to come, which otherwise have the environment of the test.
    void SetEnvironment(std::string const & sName, std::string const & sValue);

    /// Runs the program to its end, with nothing on its standard input, in a process group of its own. As
    /// argument 0 it sees its name without a folder, like a program that was found in the search path.
    ProgramOutcome Run(std::vector<std::string> const & vArguments = {},
        std::chrono::milliseconds iLimit = std::chrono::seconds(60)) const;

    /// Runs the program likewise, and sends it the signal as soon as the condition holds.
    ProgramOutcome RunToSignal(int iSignal, std::function<bool()> const & fIsTime) const;

private:
    /// Calls fLook every millisecond with the number of the process.
    ProgramOutcome Run(std::vector<std::string> const & vArguments, std::chrono::milliseconds iLimit,
        std::function<void(int)> const & fLook) const;

    std::filesystem::path m_oProgram;
    std::vector<std::string> m_vEnvironment;
};

} // namespace tsltest
