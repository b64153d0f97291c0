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
    explicit JobRunner(std::string const & sJobs) : TestProgram(TESSEL_EXAMPLE_PROGRAMS "/jobrunner")
    {
        std::string sIni = "[Runner]\nParallel=3\nRetryPause=1\n" + sJobs;
        for (std::size_t i = 0; (i = sIni.find('%', i)) != std::string::npos; i += CHILD.size())
            sIni.replace(i, 1, CHILD);
        WriteFile("jobrunner.ini", sIni);
    }
};

/// Whether the summary shows the job's state.
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
        {"[Job/a]\nCommand=% exit 0\n[Job/b]\nAfter=a\nCommand=% exit 0\n", 0, "done", "b: done\n"},
        {"[Job/a]\nCommand=% exit 7\n[Job/b]\nAfter=a\nCommand=% exit 0\n", 1, "skipped",
            "b: skipped (needs a)\n"},
        {"[Job/a]\nCommand=% exit 1\n[Job/b]\nCommand=% exit 7\n", 2, "failed",
            "b: failed (exit code 7 instead of 0)\n"},
        {"[Job/b]\nCommand=% exit 7\nExpect=7\n", 0, "done", "b: done\n"},
        {"[Job/b]\nCommand=% once marker exit 5\nRetries=1\n", 0, "done",
            "b: retrying (exit code 5 instead of 0)\nb: running\nb: done\n"},
        {"[Job/b]\nCommand=% exit 5\nRetries=1\n", 1, "failed",
            "b: retrying (exit code 5 instead of 0)\nb: running\n"
            "b: failed (exit code 5 instead of 0)\n"},
        {"[Job/b]\nCommand=% hang\nTimeout=100\n", 1, "failed", "b: failed (not finished after 100 ms)\n"},
        {"[Job/b]\nCommand=% flood 1000000000000\nTimeout=50\n", 1, "failed",
            "b: failed (not finished after 50 ms)\n"},
        {"[Job/b]\nCommand=no_such_program_anywhere\n", 1, "failed",
            "b: failed (Error while creating process. No such file or directory)\n"},
        {"[Job/b]\nCommand=% exit 0\nMode=Quiet Detached\n", 0, "done", "b: done\n"},
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

    // Long lines come in pieces.
    JobRunner const oLongLines("[Job/a]\nCommand=% flood 1000000\n");
    EXPECT_EQ(oLongLines.Run().iExitCode, 0);
    std::string const sLongLog = oLongLines.ReadFile("Logfile.txt");
    ProgramOutcome const oChild = TestProgram("Child").Run({"flood", "1000000"});
    EXPECT_EQ(std::count(sLongLog.begin(), sLongLog.end(), 'x'),
        std::count(oChild.sOutput.begin(), oChild.sOutput.end(), 'x')
            + std::count(oChild.sErrors.begin(), oChild.sErrors.end(), 'x'));
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
    EXPECT_EQ(JobRunner("[Plugins]\nCensus=./nothing" + sJob).Run().iExitCode, 5);
}

TEST(JobRunnerRunning, CapsItsExitCode)
{
    std::string sJobs;
    for (int i = 0; i < 103; ++i)
        sJobs += "[Job/j" + std::to_string(i) + "]\nCommand=no_such_program_anywhere\n";
    EXPECT_EQ(JobRunner(sJobs).Run().iExitCode, 100);
}

TEST(JobRunnerRunning, EndsItsChildrenAndItselfInOrderAtASignal)
{
    for (int const iSignal : {SIGINT, SIGTERM})
    {
        JobRunner const oRunner("[Job/a]\nCommand=% once started hang\n[Job/b]\nAfter=a\nCommand=% exit 0\n");
        ProgramOutcome const oOutcome =
            oRunner.RunToSignal(iSignal, [&] { return oRunner.HasFile("started"); });
        EXPECT_EQ(oOutcome.iExitCode, 1) << iSignal << oOutcome.sErrors;
        EXPECT_TRUE(Ends(oOutcome.sOutput, "a", "failed"));
        EXPECT_TRUE(Ends(oOutcome.sOutput, "b", "skipped"));
        EXPECT_TRUE(Contains(oOutcome.sErrors, "Interrupted. 1 of 2 jobs failed."));
        EXPECT_TRUE(Contains(oRunner.ReadFile("Logfile.txt"),
            "Job='b'; State='skipped'; Attempts='0'; Reason='interrupted'\n"));
    }
}

TEST(JobRunnerFile, IsRefusedWithChapterAndKey)
{
    Rows<char const *, char const *> aRows = {
        {"", "jobrunner.ini has no chapter [Job/name], so there is nothing to run."},
        {"[Job/a]\nTimeout=1\n", "[Job/a] Command: A job needs a command."},
        {"[Job/a]\nCommand=x\nRetries=-1\n",
            "[Job/a] Retries: '-1' is no whole number from 0 to 2147483647."},
        {"[Job/a]\nCommand=x\nExpect=soon\n", "[Job/a] Expect: 'soon' is no whole number from 0 to 255."},
        {"[Job/a]\nCommand=x\nComand=y\n", "[Job/a] Comand: This key is not known here."},
        {"[Job/a]\nCommand=x\nMode=Loud\n", "[Job/a] Mode: There is no mode 'Loud'."},
        {"[Job/a]\nCommand=x\nAfter=b\n", "[Job/a] After: There is no job 'b'."},
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
    EXPECT_TRUE(Contains(oRunner.Run({"--help"}).sOutput, "--dry-run"));
    for (char const * const sArgument : {"--wet-run", "stray"})
        EXPECT_EQ(oRunner.Run({sArgument}).iExitCode, 2) << sArgument;
}
