#include <tessel/TaskMemory.h>

#include <cstring>
#include <gtest/gtest.h>
#include <iterator>
#include <new>
#include <vector>

using tsl::TaskMemory;

TEST(TaskMemory, KeepsAFewBlocksOfEachSizeForTheNext)
{
    constexpr std::size_t KEPT = TaskMemory::COUNT_KEPT_MAX;
    std::size_t const aSizes[] = {
        8, 96, 104, 105, 111, TaskMemory::SIZE_KEPT_MAX, TaskMemory::SIZE_KEPT_MAX + 8};
    TaskMemory oMemory;
    std::vector<void *> aBlocks[std::size(aSizes)];
    for (std::size_t i = 0; i < std::size(aSizes); ++i)
        for (std::size_t n = 0; n < KEPT + 2; ++n)
        {
            aBlocks[i].push_back(oMemory.Take(aSizes[i]));
            std::memset(aBlocks[i].back(), 0xFF, aSizes[i]);
        }
    for (std::size_t i = 0; i < std::size(aSizes); ++i)
        for (void * const pBlock : aBlocks[i])
            oMemory.Give(pBlock, aSizes[i]);

    // Of those that are neither too short nor too long, and multiples of a pointer's size.
    for (std::size_t const i : {1U, 2U, 5U})
        for (std::size_t n = KEPT; n-- > 0;)
        {
            void * const pBlock = oMemory.Take(aSizes[i]);
            EXPECT_EQ(pBlock, aBlocks[i][n]) << aSizes[i];
            ::operator delete(pBlock);
        }
}

TEST(TaskMemory, IsTheCurrentOneOfItsThreadUntilTheEndOfTheScope)
{
    TaskMemory oOuter;
    TaskMemory oInner;
    EXPECT_EQ(TaskMemory::GetCurrent(), nullptr);
    {
        TaskMemory::Scope const oScope(oOuter);
        {
            TaskMemory::Scope const oNested(oInner);
            EXPECT_EQ(TaskMemory::GetCurrent(), &oInner);
        }
        EXPECT_EQ(TaskMemory::GetCurrent(), &oOuter);
    }
    EXPECT_EQ(TaskMemory::GetCurrent(), nullptr);
}
