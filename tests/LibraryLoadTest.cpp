#include "TestPrelude.h"

using namespace tsltest;

TEST(LibraryLoad, OpensTheLogAndLeavesTheProcessWhenItIsUnloaded)
{
    TestProgram const oProgram("LoadUnload");
    EXPECT_EQ(oProgram.Run().sOutput, "1 gone\n1 gone\n1 gone\n0 loaded\n");
    EXPECT_TRUE(oProgram.HasFile("Logfile.txt"));
}

TEST(LibraryUnload, LetsReportsComeToNothing)
{
    TestProgram const oProgram("Reporter");
    ProgramOutcome const oOutcome = oProgram.Run({"late", "debug:in time"});
    EXPECT_EQ(oOutcome.iExitCode, 0);
    EXPECT_EQ(oOutcome.sOutput, "late report\n");
    EXPECT_EQ(oProgram.ReadLog(), "T P DEB Id in time\n");
}

TEST(ProcessEnd, FreesNothingUnderThreadsThatRunOn)
{
    struct Row
    {
        char const * sWay;
        char const * sCount;
    };
    // A sanitizer takes seconds for the end of a process that has many threads.
    char const * const sMany = *TESSEL_SANITIZE ? "8" : "40";
    for (Row const & oRow : {Row{"return", sMany}, {"thread", sMany}, {"callback", sMany},
             {"destructor", sMany}, {"log", "1"}, {"stuck", "1"}})
    {
        TestProgram const oProgram("Exits");
        ProgramOutcome const oOutcome = oProgram.Run({oRow.sCount, oRow.sWay, "60"}, std::chrono::minutes(4));
        EXPECT_EQ(oOutcome.sOutput, "ok\n") << oRow.sWay << ": " << oOutcome.sErrors;
    }
}
