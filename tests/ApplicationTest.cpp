#include "AssertionTest.h"
#include "ProcessTest.h"

using namespace tsl;
using namespace tsltest;

TEST(ApplicationRunCycle, RunsTheStepsAndEndsWithTheCodeOfTheLast)
{
    // A message line shows code, text and size of the history; each failure has a cause of its own.
    Rows<std::vector<std::string>, int, std::string> aRows = {{{}, 0, "PreRun\nRun\nPostRun\n"},
        {{"Run=fail:7"}, 0, "PreRun\nRun\nmessage 7 Run 1\nPostRun\n"},
        {{"Run=fail:7", "PostRun=fail:4"}, 4, "PreRun\nRun\nmessage 7 Run 1\nPostRun\nmessage 4 PostRun 2\n"},
        {{"PreRun=fail:3"}, 0, "PreRun\nmessage 3 PreRun 1\nPostRun\n"},
        {{"PreRun=throw:3"}, 0, "PreRun\nmessage 3 PreRun 1\nPostRun\n"},
        {{"Run=throw:9"}, 0, "PreRun\nRun\nmessage 9 Run 1\nPostRun\n"},
        {{"PostRun=throw:9"}, 9, "PreRun\nRun\nPostRun\nmessage 9 PostRun 1\n"},
        {{"PostRun=fail:0"}, 0, "PreRun\nRun\nPostRun\nmessage 0 PostRun 1\n"},
        {{"Run=assert"}, 98, "PreRun\nRun\nexception 6\n"},
        {{"-"}, 1, "message 1 Syntaxfehler: Eine Option muss aus midestens einem Zeichen bestehen. 0\n"}};
    for (auto const & [vArguments, iExitCode, sOutput] : aRows)
    {
        ProgramOutcome const oOutcome = TestProgram("RunCycle").Run(vArguments);
        EXPECT_EQ(oOutcome.iExitCode, iExitCode) << sOutput;
        EXPECT_EQ(oOutcome.sOutput, sOutput + "gone\n");
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
