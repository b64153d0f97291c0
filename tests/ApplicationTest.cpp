#include "TestPrelude.h"

using namespace tsl;
using namespace tsltest;

TEST(ApplicationRunCycle, RunsTheStepsAndEndsWithTheCodeOfTheLast)
{
    // A message line shows code, text and size of the history; each failure has a cause of its own.
    Rows<char const *, char const *, int, std::string> aRows = {
        {"", "", 0, "PreRun\nRun\nPostRun\n"},
        {"[Run]\nfail=7\n[PostRun]\nfail=4\n", "", 4,
            "PreRun\nRun\nmessage 7 Run 1\nPostRun\nmessage 4 PostRun 2\n"},
        {"[PreRun]\nfail=3\n", "", 0, "PreRun\nmessage 3 PreRun 1\nPostRun\n"},
        {"[Run]\nthrow=9\n", "", 0, "PreRun\nRun\nmessage 9 Run 1\nPostRun\n"},
        {"[PostRun]\nthrow=9\n", "", 9, "PreRun\nRun\nPostRun\nmessage 9 PostRun 1\n"},
        {"[Run]\nassert=0\n", "", 98, "PreRun\nRun\nexception 6\n"},
        {"", "-", 1, "message 1 Syntaxfehler: Eine Option muss aus midestens einem Zeichen bestehen. 0\n"},
    };
    TestProgram const oProgram("RunCycle");
    for (auto const & [sIni, sArgument, iExitCode, sOutput] : aRows)
    {
        oProgram.WriteFile("RunCycle.ini", sIni);
        ProgramOutcome const oOutcome = oProgram.Run({sArgument});
        EXPECT_EQ(oOutcome.iExitCode, iExitCode) << sOutput;
        EXPECT_EQ(oOutcome.sOutput, sOutput + "gone\n");
    }
}

TEST(ApplicationMisuse, FailsAssertions)
{
    struct OpenConfig : ConsoleApplicationConfig
    {
    } oConfig;
    EXPECT_EQ(TestProgram("RunCycle").Run({"plain"}).sOutput, "exception 6\n");
    ValueString sValue;
    std::list<ValueString> oNames;
    EXPECT_THROW(oConfig.GetEnvironment("HOME", sValue), Exception);
    EXPECT_THROW(oConfig.GetEnvironmentNames(oNames), Exception);
}
