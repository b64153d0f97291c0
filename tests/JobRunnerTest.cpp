#include "JobRunnerProgram.h"

#include <regex>

using namespace tsltest;

namespace
{

/// Whether the summary shows the job's state.
testing::AssertionResult Ends(
    std::string const & sOutput, std::string const & sJob, std::string const & sState)
{
    std::string const sSummary = sOutput.substr(std::min(sOutput.find("Job "), sOutput.size()));
    return Contains(std::regex_replace(sSummary, std::regex(" +"), " "), '\n' + sJob + ' ' + sState + ' ');
}

} // namespace

TEST(JobRunnerRunning, RunsJobsInTheirOrderAndReportsWhatFailed)
{
    // The state is that of the job "b".
    Rows<char const *, int, char const *, char const *> aRows = {
        {"[Job/a]\nCommand=% exit 7\n[Job/b]\nAfter=a\nCommand=% exit 0\n", 1, "skipped",
            "b: skipped (needs a)\n"},
        {"[Job/a]\nCommand=% exit 1\n[Job/b]\nCommand=% exit 7\n", 1, "failed",
            "b: failed (exit code 7 instead of 0)\n"},
        {"[Job/b]\nCommand=% once marker exit 5\nRetries=1\n", 0, "done",
            "b: retrying (exit code 5 instead of 0)\nb: running\nb: done\n"},
        {"[Job/b]\nCommand=% hang\nTimeout=100\n", 1, "failed", "b: failed (not finished after 100 ms)\n"},
        {"[Job/b]\nCommand=% flood 1000000000000\nTimeout=50\n", 1, "failed",
            "b: failed (not finished after 50 ms)\n"},
        {"[Job/a]\nCommand=% exit 0\n[Job/b]\nAfter=a\nCommand=no_such_program_anywhere\n", 1, "failed",
            "jobrunner: 'no_such_program_anywhere' cannot be started: No such file or directory\n"},
        {"[Job/b]\nCommand=% signal 6\n", 1, "failed", "b: failed (killed by SIGABRT)\n"},
        {"[Job/b]\nCommand=% exit 139\n", 1, "failed", "b: failed (exit code 139 instead of 0)\n"},
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
    EXPECT_EQ(oOther.iExitCode, 2);
    EXPECT_EQ(
        oOther.sErrors, "jobrunner: [Plugins] Nobody: The plug-in cannot be used. A name without a slash "
                        "is looked for as the system looks for libraries.\njobrunner: '"
                            + sCensus + "' has no processor 'Nobody'.\n");
    EXPECT_EQ(JobRunner("[Plugins]\nCensus=./nothing" + sJob).Run().iExitCode, 2);
}

TEST(JobRunnerFile, IsRefusedWithChapterAndKey)
{
    Rows<std::string, char const *> aRows = {
        {"", "jobrunner.ini: [Job/name] There is no such chapter, so there is nothing to run."},
        {"[Job/a]\nTimeout=1\n", "jobrunner.ini:4: [Job/a] Command: A job needs a command, as in"},
        {"[Job/a]\nCommand=x\nRetries=-1\n",
            "[Job/a] Retries: '-1' is no whole number from 0 to 2147483647."},
        {"[Job/a]\nCommand=x\nExpect=soon\n", "[Job/a] Expect: 'soon' is no whole number from 0 to 255."},
        {"[Job/a]\nCommand=x\nComand=y\n",
            "jobrunner.ini:6: [Job/a] Comand: This key is not known here. Did you mean 'Command'?"},
        {"[Job/a]\nCommand=x\nMode=Loud\n", "[Job/a] Mode: There is no mode 'Loud'."},
        {"[Job/a]\nCommand=x\nAfter=b\n[Job/b]\nCommand=x\nAfter=c\n[Job/c]\nCommand=x\nAfter=d\n"
         "[Job/d]\nCommand=x\nAfter=b\n",
            "[Job/b] After: The job would wait for itself: b after c after d after b."},
        {"[Job/a]\nCommand=x && y\n", "'&&' is for a shell, and none takes part."},
        {"[Job/a]\nCommand=x \"|\" >y\n", "'>' is for a shell, and none takes part."},
        {"[Jobs/a]\nCommand=x\n", "[Jobs/a] This chapter is not known. Did you mean 'Job/a'?"},
        {"[Job/a]\nCommand=no_such_program_anywhere\n",
            "jobrunner.ini:5: [Job/a] Command: The program 'no_such_program_anywhere' cannot be started: No "
            "such"},
        {"[Job/a]\nCommand=cd /tmp\n", "It is a word of shells; Shell=yes runs the command by one."},
        {"[Job/a]\nCommand=%\nFolder=nowhere\n",
            "jobrunner.ini:6: [Job/a] Folder: There is no folder 'nowhere'."},
        {"[Job/a]\nCommand=% " + std::string(500, 'x') + "\n",
            "jobrunner.ini:5: The line has more than 499 bytes."},
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
