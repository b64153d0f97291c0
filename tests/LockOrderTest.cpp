#include "TestPrelude.h"

using namespace tsl;

namespace
{

void TakeBoth(CriticalSectionMutex & oFirst, CriticalSectionMutex & oSecond)
{
    oFirst.Lock();
    oSecond.Lock();
    oFirst.Unlock();
    oSecond.Unlock();
}

/// In the child of a death test, on a thread after the other: nobody ever waits.
void TakeInACircle()
{
    CriticalSectionMutex aLocks[3];
    for (int i = 0; i < 3; ++i)
        std::thread([&] { TakeBoth(aLocks[i], aLocks[(i + 1) % 3]); }).join();
}

} // namespace

TEST(LockOrder, IsCheckedEvenIfNobodyHasToWait)
{
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_DEATH(TakeInACircle(), "Two locks are taken in both orders, here:(.|\n)*the other way round:\n.");
}
