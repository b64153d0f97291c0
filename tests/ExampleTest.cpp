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
    for (Row const & oRow : {Row{"greeter", 3}, Row{"trafficlight", 4}, Row{"values", 2}})
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

TEST(Examples, EndWithAMessageForFormatsThatCannotBeUsed)
{
    struct Row
    {
        std::string sProgram;
        std::string sIni;
        std::string sArgument;
        std::string sPrinted; ///< behind what begins every message, or the whole
        int iExitCode = 6;
    };
    std::string const sBad = "Ungültiger Formatstring! String : ";
    Row const aRows[] = {
        {"greeter", "[Greeter]\nFormat=${%s%n}", "Ann", sBad + "\"%s%n\""},
        {"greeter", "[Greeter]\nFormat=${%*s}", "Ann", sBad + "\"%*s\""},
        {"values", "[Values/Integer]\nFormat=${%n}", "7", sBad + "\"%n\""},
        {"values", "[Values/Integer]\nFormat=${clsid}", "7", "in einem Collection-Layout erlaubt!"},
        {"values", "[Values/Float]\nFormat=${%*f}", "0.5", sBad + "\"%*f\""},
        {"values", "[Values/Float]\nDecimalPlaces=99999", "0.5", sBad + "\"%.99999f\""},
        {"values", "[Values]\nFormat=${dump", "7", "Zeichen '}' nicht gefunden. String : \"${dump\""},
        {"values", "[Values]\nFormat=${%n%s}", "7", "${%n%s}\n", 0},
        {"values", "[Values/Named]\nFormat=${%n%s}", "a=7", "(${%n%s})\n", 0},
    };
    for (Row const & oRow : aRows)
    {
        TestProgram const oProgram(TESSEL_EXAMPLE_PROGRAMS "/" + oRow.sProgram);
        oProgram.WriteFile(oRow.sProgram + ".ini", oRow.sIni);
        ProgramOutcome const oOutcome = oProgram.Run({oRow.sArgument});
        EXPECT_EQ(oOutcome.iExitCode, oRow.iExitCode) << oRow.sIni;
        EXPECT_NE((oOutcome.sOutput + oOutcome.sErrors).find(oRow.sPrinted), std::string::npos)
            << oRow.sIni << " gives " << oOutcome.sOutput << oOutcome.sErrors;
    }
}
