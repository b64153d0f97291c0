#include "ProcessTest.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>

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

} // namespace

TEST(Examples, PrintWhatTheirPagesShow)
{
    struct Row
    {
        std::string sName;
        std::size_t iRuns;
    };
    for (Row const & oRow : {Row{"greeter", 3}, Row{"trafficlight", 4}})
    {
        std::string const sSource = TESSEL_EXAMPLE_SOURCES "/" + oRow.sName + "/";
        TestProgram const oProgram(TESSEL_EXAMPLE_PROGRAMS "/" + oRow.sName);
        std::stringstream oIni;
        oIni << std::ifstream(sSource + oRow.sName + ".ini").rdbuf();
        oProgram.WriteFile(oRow.sName + ".ini", oIni.str());

        std::vector<ShownRun> const vRuns = ReadRuns(std::ifstream(sSource + "README.md"));
        EXPECT_EQ(vRuns.size(), oRow.iRuns) << oRow.sName;
        int iExitCode = 0;
        for (ShownRun const & oRun : vRuns)
        {
            SCOPED_TRACE(oRow.sName + " prints " + oRun.sPrinted);
            if (oRun.vWords == std::vector<std::string>{"echo", "$?"})
            {
                EXPECT_EQ(std::to_string(iExitCode) + '\n', oRun.sPrinted);
                continue;
            }
            ASSERT_EQ(oRun.vWords.at(0), oRow.sName);
            ProgramOutcome const oOutcome = oProgram.Run({oRun.vWords.begin() + 1, oRun.vWords.end()});
            EXPECT_EQ(oOutcome.sOutput + oOutcome.sErrors, oRun.sPrinted);
            iExitCode = oOutcome.iExitCode;
        }
    }
}
