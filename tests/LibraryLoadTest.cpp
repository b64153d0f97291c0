#include "AssertionTest.h"
#include "ProcessTest.h"

using namespace tsltest;

TEST(LibraryLoad, OpensTheLogAndLeavesTheProcessWhenItIsUnloaded)
{
    TestProgram const oProgram("LoadUnload");
    EXPECT_EQ(oProgram.Run().sOutput, "1 gone\n1 gone\n1 gone\n");
    EXPECT_TRUE(oProgram.HasFile("Logfile.txt"));
}

TEST(LibraryUnload, LetsReportsComeToNothing)
{
    TestProgram const oProgram("Reporter");
    ProgramOutcome const oOutcome = oProgram.Run({"late", "debug:in time"});
    EXPECT_EQ(oOutcome.iExitCode, 0);
    EXPECT_EQ(oOutcome.sOutput, "late report\n");
    EXPECT_EQ(ReadLog(oProgram), "T P DEB Id in time\n");
}
