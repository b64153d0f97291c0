#include "TestChild.h"
#include "TestPrelude.h"

#include <csignal>
#include <regex>

using namespace tsltest;

namespace
{

/// The runner in a folder of its own, with jobs whose command "%" stands for the test's own program.
class JobRunner : public TestProgram
{
public:
    explicit JobRunner(std::string const & sJobs) : TestProgram(TESSEL_PROGRAMS "/jobrunner")
    {
        std::string sIni = "[Runner]\nParallel=3\nRetryPause=1\n" + sJobs;
        for (std::size_t i = 0; (i = sIni.find('%', i)) != std::string::npos; i += CHILD.size())
            sIni.replace(i, 1, CHILD);
        WriteFile("jobrunner.ini", sIni);
    }
};

testing::AssertionResult Ends(
    std::string const & sOutput, std::string const & sJob, std::string const & sState)
{
    std::string const sSummary = sOutput.substr(std::min(sOutput.find("Job "), sOutput.size()));
    return Contains(std::regex_replace(sSummary, std::regex(" +"), " "), '\n' + sJob + ' ' + sState + ' ');
}

} // namespace

TEST(JobRunnerRunning, EndsWithTheNumberOfFailedJobs)
{
    // The state is that of the job "b".
    Rows<char const *, int, char const *, char const *> aRows = {
        {"[Job/a]\nCommand=% exit 7\n[Job/b]\nAfter=a\nCommand=% exit 0\n", 1, "skipped",
            "b: skipped (needs a)\n"},
        {"[Job/a]\nCommand=% exit 1\n[Job/b]\nCommand=% exit 7\n", 2, "failed",
            "b: failed (exit code 7 instead of 0)\n"},
        {"[Job/b]\nCommand=% once marker exit 5\nRetries=1\n", 0, "done",
            "b: retrying (exit code 5 instead of 0)\nb: running\nb: done\n"},
        {"[Job/b]\nCommand=% hang\nTimeout=100\n", 1, "failed", "b: failed (not finished after 100 ms)\n"},
        {"[Job/b]\nCommand=no_such_program_anywhere\n", 1, "failed",
            "b: failed (Error while creating process. No such file or directory)\n"},
    };
    for (auto const & [sJobs, iExitCode, sState, sPrinted] : aRows)
    {
        ProgramOutcome const oOutcome = JobRunner(sJobs).Run();
        EXPECT_EQ(oOutcome.iExitCode, iExitCode) << sJobs << oOutcome.sErrors;
        EXPECT_TRUE(Ends(oOutcome.sOutput, "b", sState)) << sJobs;
        EXPECT_TRUE(Contains(oOutcome.sOutput, sPrinted)) << sJobs;
    }
}

TEST(JobRunnerRunning, LogsTheLinesOfBothStreamsWithTheNameOfTheJob)
{
    JobRunner const oRunner(
        "[Job/talk]\nCommand=% out hello\\n out \"two words\\n\"\n[Job/warn]\nCommand=% err beware\\n\n");
    EXPECT_EQ(oRunner.Run().iExitCode, 0);
    std::string const sLog = oRunner.ReadFile("Logfile.txt");
    for (char const * const sLine : {"Job='talk'; Stream='out'; Line='hello'\n",
             "Job='talk'; Stream='out'; Line='two words'\n", "Job='warn'; Stream='err'; Line='beware'\n"})
        EXPECT_TRUE(Contains(sLog, sLine));

    JobRunner const oLongLines("[Job/a]\nCommand=% line 1000000\n");
    EXPECT_EQ(oLongLines.Run().iExitCode, 0);
    std::string const sLongLog = oLongLines.ReadFile("Logfile.txt");
    EXPECT_GE(std::count(sLongLog.begin(), sLongLog.end(), '0'), 1'000'000);
}

TEST(JobRunnerRunning, LoadsItsPlugIns)
{
    std::string const sCensus = TESSEL_TEST_PROGRAMS "/census";
    std::string const sJob = "\n[Job/a]\nCommand=% exit 0\n";
    EXPECT_EQ(JobRunner("[Plugins]\nCensus=" + sCensus + sJob).Run().iExitCode, 0);
    ProgramOutcome const oOther = JobRunner("[Plugins]\nNobody=" + sCensus + sJob).Run();
    EXPECT_EQ(oOther.iExitCode, 5);
    EXPECT_EQ(oOther.sErrors, "jobrunner: [Plugins] Nobody: The plug-in cannot be used.\njobrunner: '"
                                  + sCensus + "' has no processor 'Nobody'.\n");
}

TEST(JobRunnerRunning, EndsItsChildrenAndItselfInOrderAtASignal)
{
    JobRunner const oRunner("[Job/a]\nCommand=% once started hang\n[Job/b]\nAfter=a\nCommand=% exit 0\n");
    ProgramOutcome const oOutcome = oRunner.RunToSignal(SIGINT, [&] { return oRunner.HasFile("started"); });
    EXPECT_EQ(oOutcome.iExitCode, 1) << oOutcome.sErrors;
    EXPECT_TRUE(Ends(oOutcome.sOutput, "a", "failed"));
    EXPECT_TRUE(Ends(oOutcome.sOutput, "b", "skipped"));
    EXPECT_TRUE(Contains(oOutcome.sErrors, "Interrupted. 1 of 2 jobs failed."));
    EXPECT_TRUE(Contains(
        oRunner.ReadFile("Logfile.txt"), "Job='b'; State='skipped'; Attempts='0'; Reason='interrupted'\n"));
}

TEST(JobRunnerFile, IsRefusedWithChapterAndKey)
{
    Rows<char const *, char const *> aRows = {
        {"", "jobrunner.ini has no chapter [Job/name], so there is nothing to run."},
        {"[Job/a]\nCommand=x\nExpect=soon\n", "[Job/a] Expect: 'soon' is no whole number from 0 to 255."},
        {"[Job/a]\nCommand=x\nMode=Loud\n", "[Job/a] Mode: There is no mode 'Loud'."},
        {"[Job/a]\nCommand=x\nAfter=b\n[Job/b]\nCommand=x\nAfter=c\n[Job/c]\nCommand=x\nAfter=d\n"
         "[Job/d]\nCommand=x\nAfter=b\n",
            "[Job/b] After: The job would wait for itself: b after c after d after b."},
        {"[Job/a]\nCommand\n", "Error while reading file 'jobrunner.ini', line 5."},
    };
    for (auto const & [sJobs, sFailure] : aRows)
    {
        ProgramOutcome const oOutcome = JobRunner(sJobs).Run();
        EXPECT_EQ(oOutcome.iExitCode, 2) << sJobs;
        EXPECT_TRUE(Contains(oOutcome.sErrors, sFailure)) << sJobs;
        EXPECT_EQ(oOutcome.sOutput, "") << sJobs;
    }
}

TEST(JobRunnerFile, IsShownAsOrderAndAsGraph)
{
    JobRunner const oRunner("[Job/a]\nCommand=x\nAfter=c\n[Job/b]\nCommand=y\n[Job/c]\nCommand=z 1\n");
    EXPECT_EQ(oRunner.Run({"--dry-run"}).sOutput, "1  b: y\n1  c: z 1\n2  a: x\n");
    EXPECT_EQ(oRunner.Run({"--dot"}).sOutput,
        "digraph jobs {\n    \"a\";\n    \"c\" -> \"a\";\n    \"b\";\n    \"c\";\n}\n");
    EXPECT_EQ(oRunner.Run({"--wet-run"}).iExitCode, 2);
}
