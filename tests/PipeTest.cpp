#include "TestPrelude.h"

using namespace tsl;
using namespace tsltest;

namespace
{

int Take(Pipe<Message> & oPipe)
{
    std::unique_ptr<Message> const pMessage(oPipe.Receive());
    return pMessage ? dynamic_cast<NumberMessage &>(*pMessage).iNumber : 0;
}

/// An item that knows how many of its kind there are, and whose copying may fail.
struct Item
{
    Item() { ++iCount; }
    Item(Item const & oSource) : bFails(oSource.bFails), pPipe(oSource.pPipe)
    {
        if (bFails)
            throw std::runtime_error("no copy");
        ++iCount;
    }
    Item & operator=(Item const &) = delete;
    ~Item()
    {
        --iCount;
        EXPECT_TRUE(!pPipe || pPipe->IsEmpty()) << "an item may use the pipe that deletes it";
    }

    bool bFails = false;
    Pipe<Item> * pPipe = nullptr;

    static inline int iCount = 0;
};

using ItemPipe = DefaultPipe<Item, CriticalSectionMutex, CloneByCopyConstructor<Item>>;

} // namespace

TEST(Pipe, GivesOutCopiesOfTheSameClassInTheirOrder)
{
    PipeDebMessage oPipe("pipe");
    oPipe.Send(NumberMessage(1));
    oPipe.Send(NumberMessage(2));
    oPipe.Send(DeepMessage());
    EXPECT_EQ(Take(oPipe), 1);
    EXPECT_EQ(Take(oPipe), 2);
    std::unique_ptr<Message> const pDeep(oPipe.Receive());
    EXPECT_NE(dynamic_cast<DeepMessage *>(pDeep.get()), nullptr);
    EXPECT_TRUE(oPipe.IsEmpty());
    EXPECT_EQ(oPipe.Receive(), nullptr);
}

TEST(Pipe, OwnsWhatNobodyHasTaken)
{
    {
        ItemPipe oPipe;
        Item oItem;
        oPipe.Send(oItem);
        oPipe.Send(oItem);
        oPipe.Clear();
        EXPECT_EQ(Item::iCount, 1);
        oItem.bFails = true;
        EXPECT_THROW(oPipe.Send(oItem), std::runtime_error);
        EXPECT_TRUE(oPipe.IsEmpty()) << "nothing that cannot be copied";
        oItem.bFails = false;
        oItem.pPipe = &oPipe;
        oPipe.Send(oItem);
        oPipe.Clear();
        oItem.pPipe = nullptr;
        oPipe.Send(oItem);
    }
    EXPECT_EQ(Item::iCount, 0);
}

TEST(Pipe, LosesNothingBetweenThreads)
{
    constexpr int iThreads = 4;
    constexpr int iCount = 5'000;
    PipeDebMessage oPipe("pipe");
    // Two readers, each of which must see the messages of one sender in their order.
    std::atomic<int> iTaken{0};
    auto const fRead = [&]
    {
        std::vector<int> vLast(iThreads, 0);
        while (iTaken < iThreads * iCount)
        {
            int const iNumber = Take(oPipe);
            if (iNumber == 0)
                continue;
            int & iLast = vLast[static_cast<std::size_t>((iNumber - 1) % iThreads)];
            EXPECT_GT(iNumber, iLast);
            iLast = iNumber;
            ++iTaken;
        }
    };
    auto const fSend = [&](int iThread)
    {
        for (int i = 0; i < iCount; ++i)
            oPipe.Send(NumberMessage(1 + iThread + i * iThreads));
    };
    RunOnThreads(iThreads + 2, [&](int i) { i < iThreads ? fSend(i) : fRead(); });
    EXPECT_EQ(iTaken, iThreads * iCount);
    EXPECT_TRUE(oPipe.IsEmpty());
}
