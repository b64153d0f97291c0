#include "TestPrelude.h"

#include <csignal>
#include <regex>

using namespace tsltest;

namespace
{

/// A command that a page shows, and what it prints there.
struct ShownRun
{
    std::vector<std::string> vWords;
    std::string sPrinted;
};

/// Reads the indented blocks: "$ " begins a command, and the lines behind it are what it prints.
std::vector<ShownRun> ReadRuns(std::istream && oPage)
{
    std::vector<ShownRun> vRuns;
    bool bInRun = false;
    for (std::string sLine; std::getline(oPage, sLine);)
    {
        bool const bCommand = sLine.starts_with("    $ ");
        bInRun = bCommand || (bInRun && sLine.starts_with("    "));
        if (bCommand)
        {
            std::istringstream oWords(sLine.substr(6));
            vRuns.emplace_back().vWords = {std::istream_iterator<std::string>(oWords), {}};
        }
        else if (bInRun)
            vRuns.back().sPrinted += sLine.substr(4) + '\n';
    }
    return vRuns;
}

/// Leaves the line numbers out, which any change of a source changes.
std::string WithoutLines(std::string const & sText)
{
    return std::regex_replace(sText, std::regex(R"((\[[\w./]+):\d+\])"), "$1]");
}

} // namespace

TEST(Examples, PrintWhatTheirPagesShow)
{
    for (std::string const sName : {"greeter", "plugin", "trafficlight", "values"})
    {
        std::string const sSource = TESSEL_EXAMPLE_SOURCES "/" + sName + "/";
        TestProgram oProgram(TESSEL_EXAMPLE_PROGRAMS "/" + sName);
        // A sanitizer stands between the library and the loader, which then does not look beside the library.
        if (*TESSEL_SANITIZE)
            oProgram.SetEnvironment("LD_LIBRARY_PATH", TESSEL_EXAMPLE_PROGRAMS "/../lib");
        std::stringstream oIni;
        oIni << std::ifstream(sSource + sName + ".ini").rdbuf();
        oProgram.WriteFile(sName + ".ini", oIni.str());

        std::vector<ShownRun> const vRuns = ReadRuns(std::ifstream(sSource + "README.md"));
        EXPECT_FALSE(vRuns.empty()) << sName;
        int iExitCode = 0;
        for (ShownRun const & oRun : vRuns)
        {
            SCOPED_TRACE(sName + " prints " + oRun.sPrinted);
            if (oRun.vWords == std::vector<std::string>{"echo", "$?"})
            {
                EXPECT_EQ(std::to_string(iExitCode) + '\n', oRun.sPrinted);
                continue;
            }
            ASSERT_EQ(oRun.vWords.at(0), sName);
            ProgramOutcome const oOutcome = oProgram.Run({oRun.vWords.begin() + 1, oRun.vWords.end()});
            EXPECT_EQ(WithoutLines(oOutcome.sOutput + oOutcome.sErrors), WithoutLines(oRun.sPrinted));
            iExitCode = oOutcome.iExitCode;
        }
    }
}

TEST(BackgroundExample, EndsCleanlyBySignal)
{
    TestProgram const oProgram(TESSEL_EXAMPLE_PROGRAMS "/background");
    oProgram.WriteFile("background.ini", "[Background]\nParts=1000000\nPartDuration=1\n"
                                         "[Debug]\nEnable=1\n[Debug/Switch]\nTask=1\n");
    ProgramOutcome const oOutcome = oProgram.RunToSignal(SIGTERM,
        [&] {
            return oProgram.ReadFile("Logfile.txt").find("Task 'Work' starts DoProcess ")
                   != std::string::npos;
        });
    EXPECT_EQ(oOutcome.iExitCode, 12) << oOutcome.sErrors;
    EXPECT_TRUE(std::regex_search(oOutcome.sOutput, std::regex("\\d+ of 1000000 parts done\\.\n$")))
        << oOutcome.sOutput.substr(oOutcome.sOutput.rfind('\r') + 1);
}
