#include "Memory.h"
#include "Operations.h"

#include "../TestChild.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string_view>
#include <thread>

#include <unistd.h>

using namespace tslfaults;

namespace
{

constexpr long LAST = 500;
constexpr unsigned int PATIENCE = 60; // seconds

// Of the one that runs, for the report of a hang.
char g_aPlace[128] = "";

[[noreturn]] void ReportHang(int)
{
    static_cast<void>(::write(STDERR_FILENO, g_aPlace, sizeof g_aPlace) == 0);
    ::_exit(99);
}

Outcome::State Try(Operation const & oOperation)
try
{
    return oOperation.fDo().eState;
}
catch (std::bad_alloc const &)
{
    return Outcome::eFailed;
}
catch (tsl::Exception const &)
{
    return Outcome::eFailed;
}

/// A thread finds a lock that another one has lost, unlike that one itself.
bool WorksOnAnotherThread(Operation const & oOperation)
{
    Outcome::State eOutcome = Outcome::eWrong;
    std::thread([&] { eOutcome = Try(oOperation); }).join();
    return eOutcome == Outcome::eDone;
}

enum class Verdict : int
{
    eNeverStruck,
    eSound,
    eWrong,
    eLostItsUse
};

Verdict TryWithFault(Operation const & oOperation, Failing eFailing, long n)
{
    std::snprintf(g_aPlace, sizeof g_aPlace, "%s: hangs at %s %ld\n", oOperation.sName,
        eFailing == Failing::eOne ? "allocation" : "all from allocation", n);
    ::alarm(PATIENCE);
    MemoryFault oFault(eFailing, n);
    Outcome::State const eOutcome = Try(oOperation);
    oFault.Stop();
    bool const bStruck = MemoryFault::HasStruck();
    bool const bWorks = WorksOnAnotherThread(oOperation);
    ::alarm(0);
    if (eOutcome == Outcome::eWrong || (eOutcome != Outcome::eDone && !bStruck))
        return Verdict::eWrong;
    if (!bWorks)
        return Verdict::eLostItsUse;
    return bStruck ? Verdict::eSound : Verdict::eNeverStruck;
}

/// In a process that has not done it before, and which then ends as programs do.
Verdict TryFirstUse(Operation const & oOperation, Failing eFailing, long n)
{
    std::fflush(nullptr);
    pid_t const iProcess = ::fork();
    if (iProcess == 0)
        std::exit(static_cast<int>(TryWithFault(oOperation, eFailing, n)));

    int iStatus = 0;
    ::waitpid(iProcess, &iStatus, 0);
    if (WIFEXITED(iStatus) && WEXITSTATUS(iStatus) <= static_cast<int>(Verdict::eLostItsUse))
        return static_cast<Verdict>(WEXITSTATUS(iStatus));
    ADD_FAILURE() << "status " << iStatus;
    return Verdict::eWrong;
}

/// Tries each place once, until the faults come after the operation.
void Sweep(Operation const & oOperation, Verdict (*fTry)(Operation const &, Failing, long), long iLast)
{
    for (Failing const eFailing : {Failing::eOne, Failing::eAllFrom})
    {
        Verdict eVerdict = Verdict::eSound;
        for (long n = 1; n <= iLast && eVerdict != Verdict::eNeverStruck; ++n)
        {
            SCOPED_TRACE(
                testing::Message() << (eFailing == Failing::eOne ? "" : "all from ") << "allocation " << n);
            eVerdict = fTry(oOperation, eFailing, n);
            ASSERT_LE(eVerdict, Verdict::eSound);
        }
    }
}

void PrintTo(Verdict eVerdict, std::ostream * pStream)
{
    static char const * const aNames[] = {"never struck", "sound", "wrong", "lost its use"};
    *pStream << aNames[static_cast<int>(eVerdict)];
}

class Faults : public testing::TestWithParam<Operation>
{
};

} // namespace

namespace tslfaults
{

static void PrintTo(Operation const & oOperation, std::ostream * pStream)
{
    *pStream << oOperation.sName;
}

} // namespace tslfaults

TEST_P(Faults, OfMemoryAreToldAndLeaveAllInOrder)
{
    ::signal(SIGALRM, &ReportHang);
    std::filesystem::resize_file("Logfile.txt",
        0); // it would grow with every run
    Operation const & oOperation = GetParam();
    if (std::string_view(TESSEL_SANITIZE) == "thread" && std::string_view(oOperation.sName) == "KillThread")
        GTEST_SKIP() << "the thread sanitizer waits for the end of each thread in order";

    ASSERT_EQ(TryFirstUse(oOperation, Failing::eOne, 0), Verdict::eNeverStruck)
        << "it has no fault of its own";
    Sweep(oOperation, &TryFirstUse, LAST);
    ASSERT_FALSE(HasFailure());

    // What is kept for the next one is kept by thread; after that nothing more stays.
    Sweep(oOperation, &TryWithFault, LAST);
    for (int i = 0; i < 50; ++i)
        EXPECT_TRUE(WorksOnAnotherThread(oOperation));
    std::size_t const iDescriptors = tsltest::CountEntries("/proc/self/fd");
    long const iBlocks = CountBlocks();
    Sweep(oOperation, &TryWithFault, LAST);
    EXPECT_LE(CountBlocks(), iBlocks);
    EXPECT_EQ(tsltest::CountEntries("/proc/self/fd"), iDescriptors);
    EXPECT_FALSE(tsltest::HasChildren());
}

INSTANTIATE_TEST_SUITE_P(Memory, Faults, testing::ValuesIn(GetOperations()),
    [](auto const & oInfo) { return std::string(oInfo.param.sName); });
