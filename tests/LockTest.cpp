#include "AssertionTest.h"

using namespace tsl;

namespace
{

/// Another thread that takes a lock and gives it up again.
class Visitor
{
public:
    template<class Mutex>
    explicit Visitor(Mutex & oMutex)
        : m_oVisit(std::async(std::launch::async, [&oMutex] { ReadLock<Mutex> const oScope(oMutex); }))
    {
    }

    /// Whether the thread has to wait. An answer of true takes a moment, since it proves that nothing happens.
    bool IsKeptOut() const
    {
        return m_oVisit.wait_for(std::chrono::milliseconds(30)) == std::future_status::timeout;
    }

    bool WasLetIn() const { return m_oVisit.wait_for(std::chrono::seconds(60)) == std::future_status::ready; }

private:
    std::future<void> m_oVisit;
};

TEST(ExclusiveLocks, KeepOutEveryReaderUntilTheLastEntryIsGivenUp)
{
    ReaderWriterMutex oMutex;
    ReaderWriterMutex oAssigned;
    oAssigned = oMutex; // which shares the lock
    oMutex.LockRead();
    oMutex.LockWrite();
    oMutex.Lock();
    Visitor const oVisitor(oAssigned);
    EXPECT_TRUE(oVisitor.IsKeptOut());
    oMutex.Unlock();
    oMutex.UnlockRead();
    EXPECT_TRUE(oVisitor.IsKeptOut());
    oMutex.UnlockWrite();
    EXPECT_TRUE(oVisitor.WasLetIn());
}

TEST(ExclusiveLocks, AreGivenUpWhenAScopeIsLeftByAnException)
{
    ReaderWriterMutex oMutex;
    auto const fFail = [&]
    {
        WriteLock<ReaderWriterMutex> const oWrite(oMutex);
        ReadLock<ReaderWriterMutex> const oRead(oMutex);
        throw std::runtime_error("out");
    };
    EXPECT_THROW(fFail(), std::runtime_error);
    EXPECT_TRUE(Visitor(oMutex).WasLetIn());
}

TEST(ExclusiveLocks, LetEveryWaitingThreadInSometime)
{
    constexpr int iThreads = 4;
    constexpr int iRounds = 20'000;
    CriticalSectionMutex oMutex;
    int iCount = 0;
    tsltest::RunOnThreads(iThreads,
        [&](int)
        {
            for (int i = 0; i < iRounds; ++i)
            {
                WriteLock<CriticalSectionMutex> const oOuter(oMutex);
                ReadLock<CriticalSectionMutex> const oInner(oMutex);
                ++iCount;
            }
        });
    EXPECT_EQ(iCount, iThreads * iRounds);
}

} // namespace
