#include "TestPrelude.h"

#include <csignal>
#include <regex>

using namespace tsltest;

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
