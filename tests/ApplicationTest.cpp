#include "AssertionTest.h"
#include "ProcessTest.h"

#include <tessel/ConsoleApplication.h>
#include <tessel/Exception.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace tsl;
using namespace tsltest;

TEST(ApplicationRunCycle, RunsTheStepsAndEndsWithTheCodeOfTheLast)
{
    struct Row
    {
        std::vector<std::string> vArguments;
        int iExitCode;
        std::string sOutput;
    };
    // A message line shows code, text and size of the history; each failure has a cause of its own.
    Row const aRows[] = {
        {{}, 0, "PreRun\nRun\nPostRun\n"},
        {{"Run=fail:7"}, 0, "PreRun\nRun\nmessage 7 Run 1\nPostRun\n"},
        {{"PostRun=fail:4"}, 4, "PreRun\nRun\nPostRun\nmessage 4 PostRun 1\n"},
        {{"Run=fail:7", "PostRun=fail:4"}, 4, "PreRun\nRun\nmessage 7 Run 1\nPostRun\nmessage 4 PostRun 2\n"},
        {{"PreRun=fail:3"}, 0, "PreRun\nmessage 3 PreRun 1\nPostRun\n"},
        {{"PreRun=throw:3"}, 0, "PreRun\nmessage 3 PreRun 1\nPostRun\n"},
        {{"Run=throw:9"}, 0, "PreRun\nRun\nmessage 9 Run 1\nPostRun\n"},
        {{"PostRun=throw:9"}, 9, "PreRun\nRun\nPostRun\nmessage 9 PostRun 1\n"},
        {{"PostRun=fail:0"}, 0, "PreRun\nRun\nPostRun\nmessage 0 PostRun 1\n"},
        {{"Run=assert"}, 98, "PreRun\nRun\nexception 6\n"},
        {{"-"}, 1, "message 1 Syntaxfehler: Eine Option muss aus midestens einem Zeichen bestehen. 0\n"},
    };
    for (Row const & oRow : aRows)
    {
        TestProgram const oProgram("RunCycle");
        ProgramOutcome const oOutcome = oProgram.Run(oRow.vArguments);
        std::string const sCase = oRow.vArguments.empty() ? "no argument" : oRow.vArguments.front();
        EXPECT_EQ(oOutcome.iExitCode, oRow.iExitCode) << sCase;
        EXPECT_EQ(oOutcome.sOutput, oRow.sOutput + "gone\n") << sCase;
    }
}

namespace
{

class OpenConfig : public ConsoleApplicationConfig
{
};

class OpenApplication : public ConsoleApplication
{
public:
    explicit OpenApplication(ConsoleApplicationConfig * pConfig) : ConsoleApplication(pConfig) {}

protected:
    Result Run() override { return Result(); }
};

} // namespace

TEST(ApplicationMisuse, FailsAssertions)
{
    EXPECT_TRUE(Asserts("m_pConfig!=NULL", "Application::Application : pConfig darf nicht NULL sein!",
        [] { OpenApplication(nullptr); }));
    EXPECT_EQ(TestProgram("RunCycle").Run({"plain"}).sOutput, "exception 6\n");

    OpenConfig const oConfig;
    ValueString sValue;
    std::list<ValueString> oNames;
    EXPECT_THROW(oConfig.GetEnvironment("HOME", sValue), Exception);
    EXPECT_THROW(oConfig.GetEnvironmentNames(oNames), Exception);
}
