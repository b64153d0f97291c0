#include "TestPrelude.h"

using namespace tsl;

namespace
{

template<class Mutex>
std::future<void> Visit(Mutex & oMutex)
{
    return std::async(std::launch::async, [&oMutex] { TesselDetails::ReadLock<Mutex> const oScope(oMutex); });
}

/// Whether the thread has to wait. An answer of true takes a moment, since it proves that nothing happens.
bool IsKeptOut(std::future<void> const & oVisit)
{
    return oVisit.wait_for(std::chrono::milliseconds(30)) == std::future_status::timeout;
}

bool IsLetIn(std::future<void> const & oVisit)
{
    return oVisit.wait_for(std::chrono::seconds(60)) == std::future_status::ready;
}

} // namespace

TEST(ExclusiveLocks, KeepOutEveryReaderUntilTheLastEntryIsGivenUp)
{
    ReaderWriterMutex oMutex;
    ReaderWriterMutex oAssigned;
    oAssigned = oMutex; // which shares the lock
    oMutex.LockRead();
    oMutex.LockWrite();
    oMutex.Lock();
    std::future<void> const oVisit = Visit(oAssigned);
    EXPECT_TRUE(IsKeptOut(oVisit));
    oMutex.Unlock();
    oMutex.UnlockRead();
    EXPECT_TRUE(IsKeptOut(oVisit));
    oMutex.UnlockWrite();
    EXPECT_TRUE(IsLetIn(oVisit));
}

TEST(ForkedChildren, DoEverythingWhateverTheOtherThreadsOfTheParentWereDoing)
{
    if (*TESSEL_SANITIZE)
        GTEST_SKIP()
            << "a sanitizer's own allocator is locked in a child that was forked beside other threads";

    for (std::string const sPlace : {"owner", "main", "threads", "callback", "fresh"})
    {
        tsltest::TestProgram const oProgram("Forks");
        tsltest::ProgramOutcome const oOutcome = oProgram.Run({"100", sPlace, "60"}, std::chrono::minutes(4));
        EXPECT_EQ(oOutcome.sOutput, "ok\n") << sPlace << ": " << oOutcome.sErrors;
    }
}
