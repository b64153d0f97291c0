#include "JobRunnerProgram.h"

#include <csignal>

using namespace tsltest;

namespace
{

/// The processes whose environment has the text, and that have not ended.
std::vector<int> FindProcesses(std::string const & sVariable)
{
    std::vector<int> vProcesses;
    std::error_code oError;
    for (auto const & oEntry : std::filesystem::directory_iterator("/proc", oError))
    {
        int const iProcess = std::atoi(oEntry.path().filename().c_str());
        std::stringstream oEnvironment;
        if (iProcess > 0)
            oEnvironment << std::ifstream(oEntry.path() / "environ", std::ios::binary).rdbuf();
        if (oEnvironment.str().find(sVariable) != std::string::npos)
            vProcesses.push_back(iProcess);
    }
    return vProcesses;
}

/// A variable that no other process has.
std::string MakeVariable()
{
    static int iCount = 0;
    return "JOBRUNNER_TEST=" + std::to_string(::getpid()) + '_' + std::to_string(++iCount) + '.';
}

} // namespace

TEST(JobRunnerEnding, LeavesNothingOfAJob)
{
    // What the job starts besides its first process; the signal that ends the run, or 0 for a time-out of the job.
    Rows<char const *, int> aRows = {
        {"% hang & % hang & ", 0},
        {"% ignore 15 hang & ", 0},
        {"% hang & ", SIGINT},
        {"setsid % hang & ", SIGTERM},
        {"timeout 100 % hang & ", SIGHUP},
        {"% ignore 15 hang & ", SIGQUIT},
    };
    for (auto const & [sCommand, iSignal] : aRows)
    {
        std::string const sVariable = MakeVariable();
        std::string const sDaemonVariable = MakeVariable();
        JobRunner const oRunner(
            "Grace=100\n[Job/a]\nShell=yes\nCommand=" + std::string(sCommand) + "% once started hang\nEnv/"
            + sVariable + "\nAfter=c\n" + (iSignal == 0 ? "Timeout=500\n" : "")
            + "[Job/b]\nAfter=a\nCommand=% exit 0\n[Job/c]\nShell=yes\nCommand=% hang & exit 0\nEnv/"
            + sDaemonVariable + '\n');
        ProgramOutcome const oOutcome =
            iSignal == 0 ? oRunner.Run()
                         : oRunner.RunToSignal(iSignal, [&] { return oRunner.HasFile("started"); });
        EXPECT_EQ(oOutcome.iExitCode, 1) << sCommand << iSignal << oOutcome.sErrors;
        EXPECT_EQ(FindProcesses(sVariable), std::vector<int>()) << sCommand << iSignal;

        // A daemon does not keep its job from ending, and runs on unless the run is interrupted.
        std::string const sLog = oRunner.ReadFile("Logfile.txt");
        EXPECT_TRUE(Contains(sLog, "Job='c'; State='done'"));
        EXPECT_EQ(FindProcesses(sDaemonVariable).size(), iSignal == 0 ? 1u : 0u) << iSignal;
        for (int const iProcess : FindProcesses(sDaemonVariable))
            ::kill(iProcess, SIGKILL);

        EXPECT_TRUE(
            Contains(sLog, iSignal == 0 ? "Reason='not finished after 500 ms'" : "Reason='interrupted'"));
        EXPECT_TRUE(Contains(sLog, "Job='b'; State='skipped'; Attempts='0'"));
    }
}

TEST(JobRunnerEnding, DoesNotWaitAfterASecondInterruptOrTheFirstFailure)
{
    JobRunner const oTwice("Grace=100000\n[Job/a]\nShell=yes\n"
                           "Command=trap '' TERM; kill -INT $PPID; sleep 0.2; kill -INT $PPID; % hang\n");
    EXPECT_EQ(oTwice.Run().iExitCode, 1);

    JobRunner const oFailFast(
        "[Job/a]\nCommand=% hang\n[Job/b]\nCommand=% exit 3\n[Job/c]\nAfter=a\nCommand=%\n");
    ProgramOutcome const oOutcome = oFailFast.Run({"--fail-fast"});
    EXPECT_EQ(oOutcome.iExitCode, 1);
    EXPECT_TRUE(Contains(oOutcome.sOutput, "a: failed (stopped after 'b' has failed)"));
    EXPECT_TRUE(Contains(oOutcome.sOutput, "c: skipped (stopped after 'b' has failed)"));
}

TEST(JobRunnerOutput, ReachesLogAndScreenAsItWasWritten)
{
    // The longest line does not fit into one line of the log.
    JobRunner const oRunner("[Job/a]\nShell=yes\nCommand=printf 'tab\\t\\033[1mred\\377\\000zero\\r\\n\\n'; "
                            "% line 5000; printf last; exit 1\n");
    ProgramOutcome const oOutcome = oRunner.Run();
    std::string const sLog = oRunner.ReadFile("Logfile.txt");
    for (char const * const sLine : {"Line='tab\t\033[1mred\377\\0zero\r'\n", "Line=''\n", "Line='last'\n"})
        EXPECT_TRUE(Contains(sLog, sLine));
    EXPECT_TRUE(Contains(oOutcome.sOutput, "The last lines of a:\n"
                                               + std::string("tab\t\033[1mred\377\0zero\r\n\n", 20)
                                               + std::string(5000, '0') + "\nlast\nJob "));
}

TEST(JobRunnerOutput, IsMissedIfTheLogCannotBeWritten)
{
    JobRunner const oRunner("[Job/a]\nCommand=%\n");
    std::filesystem::create_symlink("/dev/full", oRunner.GetPath() / "Logfile.txt");
    ProgramOutcome const oOutcome = oRunner.Run();
    EXPECT_EQ(oOutcome.iExitCode, 0);
    EXPECT_TRUE(Contains(oOutcome.sErrors, "Logfile.txt cannot be written"));
    EXPECT_TRUE(Contains(oOutcome.sErrors, "Logfile.txt could not be written"));
}

TEST(JobRunnerJobs, GetWhatTheyAskFor)
{
    // Chapter, line of the log.
    Rows<char const *, char const *> aRows = {
        {"Command=cat\n", "State='done'"},
        {"Command=cat\nStdin=jobrunner.ini\n", "Line='[Runner]'"},
        {"Command=cat\nFolder=/\nStdin=proc/self/comm\n", "Line='cat'"},
        {"Command=pwd\nFolder=/usr\n", "Line='/usr'"},
        {"Shell=yes\nCommand=echo \"$NAME\" | tr a-z A-Z && echo more >&2\nEnv/NAME=a b\n", "Line='A B'"},
        {"Command=% arguments \"a b\" x\"|\"y\n", "Line='787c79.'"},
    };
    for (auto const & [sChapter, sLine] : aRows)
    {
        JobRunner const oRunner("[Job/a]\n" + std::string(sChapter));
        ProgramOutcome const oOutcome = oRunner.Run();
        EXPECT_EQ(oOutcome.iExitCode, 0) << sChapter << oOutcome.sErrors << oOutcome.sOutput;
        EXPECT_TRUE(Contains(oRunner.ReadFile("Logfile.txt"), sLine)) << sChapter;
    }
}

TEST(JobRunnerArguments, ChooseJobs)
{
    JobRunner const oRunner(
        "[Job/a]\nCommand=%\n[Job/b]\nAfter=a\nCommand=% once marker exit 1\n[Job/c]\nAfter=b\nCommand=%\n"
        "[Job/d]\nCommand=%\n");
    // Arguments, the jobs that run; the second run of "b" succeeds.
    Rows<char const *, char const *> aRows = {
        {"b", "ab"},
        {"--resume c", "bc"},
        {"--resume", "d"},
        {"-j4 a --resume --keep-going d", ""},
        {"--file=jobrunner.ini -j 1", "abcd"},
    };
    for (auto const & [sArguments, sJobs] : aRows)
    {
        std::istringstream oWords(sArguments);
        ProgramOutcome const oOutcome = oRunner.Run({std::istream_iterator<std::string>(oWords), {}});
        std::string sRun;
        for (char const cJob : std::string("abcd"))
            if (oOutcome.sOutput.find(std::string(1, cJob) + ": running") != std::string::npos)
                sRun += cJob;
        EXPECT_EQ(sRun, sJobs) << sArguments << oOutcome.sErrors;
        EXPECT_EQ(oOutcome.iExitCode, sRun == "ab" ? 1 : 0) << sArguments;
    }
}

TEST(JobRunnerArguments, AreRefusedWithAHint)
{
    JobRunner const oRunner("[Job/lint]\nCommand=%\n");
    Rows<char const *, char const *> aRows = {
        {"--lits", "There is no option '--lits'. Did you mean '--list'?"},
        {"lnit", "There is no job 'lnit'. Did you mean 'lint'?"},
        {"--", "A '-', '--' or '/' alone means nothing."},
        {"/tmp/x.ini", "A file is given as --file=/tmp/x.ini."},
        {"--file /tmp/x.ini", "is given as --file=VALUE."},
        {"-j no", "'no' is no number of jobs"},
        {"--list=1", "The option '--list' takes no value."},
        {"-j 1 -j 2", "The option '-j' is given twice."},
        {"--fail-fast --keep-going", "exclude each other."},
        {"--list --dot", "can be shown at once."},
        {"--file x.ini", "Error while opening file 'x.ini'."},
    };
    for (auto const & [sArguments, sFailure] : aRows)
    {
        std::istringstream oWords(sArguments);
        ProgramOutcome const oOutcome = oRunner.Run({std::istream_iterator<std::string>(oWords), {}});
        EXPECT_EQ(oOutcome.iExitCode, 2) << sArguments;
        EXPECT_TRUE(Contains(oOutcome.sErrors, sFailure)) << sArguments;
    }
}

TEST(JobRunnerRoom, WaitsForOthersIfDescriptorsAreShort)
{
    std::string sIni = "[Runner]\nParallel=100\n";
    for (int i = 0; i < 40; ++i)
        sIni += "[Job/j" + std::to_string(i) + "]\nCommand=" + CHILD + " out line\\n\n";
    TestProgram const oLimited("/usr/bin/prlimit");
    oLimited.WriteFile("jobrunner.ini", sIni);
    // Far fewer than it counts on, so that starts fail as well.
    ProgramOutcome const oOutcome = oLimited.Run({"--nofile=70", TESSEL_PROGRAMS "/jobrunner"});
    EXPECT_EQ(oOutcome.iExitCode, 0) << oOutcome.sErrors << oOutcome.sOutput;
}
