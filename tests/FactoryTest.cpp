#include "TestPrelude.h"

using namespace tsl;
using namespace tsltest;

namespace
{

/// Notes what it is told, as "key:action ", and does with each note what the test says.
class NotingCallBack : public MessageProcessorFactoryCallBack
{
public:
    void Invoke(MessageProcessorFactory::Args const & oArgs, bool & bResult) override
    {
        std::string const sNote = oArgs.GetKey() + ":" + std::to_string(oArgs.GetAction()) + " ";
        sNotes += sNote;
        bResult = !bResult;
        fDo(sNote);
    }

    std::string sNotes;
    std::function<void(std::string const &)> fDo = [](auto &) {};
};

MessageProcessor * CreateTestProcessor()
{
    return new TestProcessor;
}

using Creator = ProductCreator<MessageProcessor, MessageProcessor * (*)()>;

template<class Key>
class KeyedFactory : public Factory<Key, Creator, CriticalSectionMutex, bool>
{
};

class CountingCallBack : public KeyedFactory<int>::Observer
{
public:
    void Invoke(KeyedFactory<int>::Args const &, bool &) override { ++iCalls; }
    void HandlerDestruction() const override { ++iEnds; }

    int iCalls = 0;
    mutable int iEnds = 0;
};

/// What a factory's key has to have, and nothing more.
class OrderedKey
{
public:
    explicit OrderedKey(int iKey) : m_iKey(iKey) { ++iObjects; }
    OrderedKey(OrderedKey const & oSource) : OrderedKey(oSource.m_iKey) {}
    OrderedKey & operator=(OrderedKey const &) = delete;
    ~OrderedKey() { --iObjects; }

    bool operator<(OrderedKey const & oOther) const { return m_iKey < oOther.m_iKey; }

    static inline std::atomic<int> iObjects{0};

private:
    int m_iKey;
};

/// Resident memory of this process in KiB.
std::size_t GetMemory()
{
    std::ifstream oStream("/proc/self/statm");
    std::size_t aPages[2] = {};
    oStream >> aPages[0] >> aPages[1];
    return aPages[1] * 4;
}

} // namespace

TEST(FactoryEntries, ReportEveryChangeToTheirObservers)
{
    MessageProcessorFactory & oFactory = MessageProcessorFactory::Instance();
    NotingCallBack oCallBack;
    oCallBack.fDo = [&](auto &) { EXPECT_TRUE(oFactory.IsAttached(&oCallBack)); };
    bool bFlag = false;
    EXPECT_TRUE(oFactory.Register("t", &CreateTestProcessor, bFlag));
    EXPECT_FALSE(bFlag) << "two notifications, each of which has turned it";
    EXPECT_FALSE(oFactory.Register("t", &CreateTestProcessor, bFlag));
    EXPECT_TRUE(bFlag);

    std::unique_ptr<MessageProcessor> const pProcessor(oFactory.CreateProcessor("t"));
    EXPECT_NE(dynamic_cast<TestProcessor *>(pProcessor.get()), nullptr) << "the first function stays";

    oFactory.Unregister("t");
    oFactory.Unregister("t");
    EXPECT_FALSE(oFactory.IsRegistered("t"));
    EXPECT_EQ(oFactory.CreateProcessor("t"), nullptr);
    EXPECT_EQ(oCallBack.sNotes, "t:1 t:2 t:1 t:4 t:8 t:4 t:8 ");
}

template<class Key>
class FactoryTables : public testing::Test
{
protected:
    using Function = int (*)();

    static int One() { return 1; }
    static int Two() { return 2; }

    TesselDetails::FactoryTable<Key, Function, CriticalSectionMutex> m_oTable;
};

using Keys = testing::Types<int, OrderedKey>;
TYPED_TEST_SUITE(FactoryTables, Keys);

TYPED_TEST(FactoryTables, FindWhatAMapFinds)
{
    typename TestFixture::Function const aFunctions[] = {&TestFixture::One, &TestFixture::Two};
    auto & oTable = this->m_oTable;
    std::map<int, typename TestFixture::Function> oModel;
    std::mt19937 oRandom(3);
    for (std::size_t i = 0; i < 5'000; ++i)
    {
        int const iKey = (static_cast<int>(oRandom() % 300) - 150) * 16;
        if (i % 3 == 0)
        {
            oTable.Erase(TypeParam(iKey));
            oModel.erase(iKey);
        }
        else
            ASSERT_EQ(oTable.Insert(TypeParam(iKey), aFunctions[i % 2]),
                oModel.insert({iKey, aFunctions[i % 2]}).second);
    }
    std::remove_reference_t<decltype(oTable)> oCopy;
    oCopy.Insert(TypeParam(1), aFunctions[0]); // which the copy loses
    oCopy = std::remove_reference_t<decltype(oTable)>(oTable);
    oTable.Erase(TypeParam(oModel.begin()->first));
    for (int iKey = -2'500; iKey < 2'500; ++iKey)
        EXPECT_EQ(oCopy.Find(TypeParam(iKey)), oModel.contains(iKey) ? oModel[iKey] : nullptr) << iKey;
    EXPECT_EQ(oTable.Find(TypeParam(oModel.begin()->first)), nullptr);
}

TYPED_TEST(FactoryTables, AreReadWhileTheyGrowAndAreUsedAgain)
{
    auto & oTable = this->m_oTable;
    EXPECT_TRUE(oTable.Insert(TypeParam(-1), &TestFixture::One));
    std::atomic<bool> bDone{false};
    std::atomic<int> iWrong{0};
    std::thread oReader(
        [&]
        {
            for (int i = 0; !bDone; ++i)
            {
                // A key that comes and goes, of which all others have the other function.
                auto const fFunction = oTable.Find(TypeParam(i % 64));
                iWrong += fFunction == (i % 2 ? &TestFixture::One : &TestFixture::Two);
                iWrong += oTable.Find(TypeParam(-1)) != &TestFixture::One;
                iWrong += oTable.Find(TypeParam(-2)) != nullptr;
            }
        });
    for (int i = 0; i < 100'000; ++i)
    {
        int const iKey = i < 90'000 ? i % 64 : i;
        oTable.Insert(TypeParam(iKey), iKey % 2 ? &TestFixture::Two : &TestFixture::One);
        oTable.Erase(TypeParam(i < 90'000 ? (i * 7) % 64 : i - 1'000));
    }
    for (int i = 0; i < 100'000; ++i)
    {
        // Tables that come to take pages of memory and give them back.
        int const iKey = 1'000'000 + i % 20'000;
        if (i / 20'000 % 2 == 0)
            oTable.Insert(TypeParam(iKey), &TestFixture::One);
        else
            oTable.Erase(TypeParam(iKey));
    }
    bDone = true;
    oReader.join();
    EXPECT_EQ(iWrong, 0);
}

TEST(FactoryKeys, NeedNothingButAnOrderAndLeaveNothingBehind)
{
    KeyedFactory<std::pair<String, OrderedKey>> oPairs;
    EXPECT_TRUE(oPairs.Register({"a", OrderedKey(1)}, &CreateTestProcessor));
    EXPECT_FALSE(oPairs.IsRegistered({"a", OrderedKey(2)}));
    oPairs.Unregister({"a", OrderedKey(1)});
    EXPECT_EQ(OrderedKey::iObjects, 0);

    KeyedFactory<int> oNumbers;
    std::size_t iBefore = 0;
    for (int i = 0; i < 1'000'000; ++i)
    {
        oNumbers.Register(i, &CreateTestProcessor);
        oNumbers.Unregister(i);
        if (i == 1'000)
            iBefore = GetMemory();
    }
    EXPECT_LT(GetMemory(), iBefore + 8'192) << "KiB";
    for (int i = 0; i < 1'000'000; ++i)
        oNumbers.Register(i * 16, &CreateTestProcessor);
    for (int i = 0; i < 1'000'000; ++i)
        oNumbers.Unregister(i * 16);
    // The thread sanitizer keeps its own memory for each address that was used.
    bool const bMeasured = std::string_view(TESSEL_SANITIZE) != "thread";
    EXPECT_LT(bMeasured ? GetMemory() : 0, iBefore + 8'192) << "KiB";
    oNumbers.Register(16, &CreateTestProcessor);
    EXPECT_TRUE(oNumbers.IsRegistered(16));
    EXPECT_FALSE(oNumbers.IsRegistered(32));
}

TEST(FactoryMisuse, NamesFactoryKeyAndFunction)
{
    MessageProcessorFactory & oFactory = MessageProcessorFactory::Instance();
    NotingCallBack oCallBack;
    std::string const sFailure = Catch([&] { oFactory.Register("t", nullptr); }).GetText();
    EXPECT_TRUE(Contains(sFailure, "Info: \"class tsl::MessageProcessorFactory::Register("));
    EXPECT_TRUE(sFailure.ends_with(") : pFunc is NULL!\"")) << sFailure;
    EXPECT_EQ(oCallBack.sNotes, "");
    EXPECT_TRUE(Asserts("pProduct",
        "class tsl::MessageProcessorFactory::DeleteInstance(class tsl::MessageProcessor) : pProduct is NULL!",
        [&] { oFactory.DeleteProduct(nullptr); }));
    EXPECT_EQ(Catch([&] { oFactory.Attach(nullptr); }).GetResult().GetErrorCode(), -1);
}

TEST(FactoryCallBacks, MayRegisterAndDetachFromInside)
{
    MessageProcessorFactory & oFactory = MessageProcessorFactory::Instance();
    NotingCallBack oCallBack;
    oCallBack.fDo = [&](std::string const & sNote)
    {
        if (sNote == "outer:2 ")
            oFactory.Register("inner", &CreateTestProcessor);
        if (sNote == "inner:2 ")
            oFactory.Detatch(&oCallBack);
    };
    EXPECT_TRUE(oFactory.Register("outer", &CreateTestProcessor));
    EXPECT_TRUE(oFactory.IsRegistered("inner"));
    oFactory.Unregister("outer");
    oFactory.Unregister("inner");
    EXPECT_EQ(oCallBack.sNotes, "outer:1 outer:2 inner:1 inner:2 ");
}

TEST(FactoryCallBacks, AreToldOfTheEndOfTheirFactoryAndNotOfItsCopies)
{
    CountingCallBack oCallBack;
    {
        KeyedFactory<int> oFactory;
        oFactory.Attach(&oCallBack);
        {
            KeyedFactory<int> oCopy(oFactory);
            KeyedFactory<int> oAssigned;
            oAssigned = oCopy;
            EXPECT_TRUE(oCopy.Register(1, &CreateTestProcessor));
            EXPECT_TRUE(oAssigned.Register(1, &CreateTestProcessor));
        }
        EXPECT_EQ(oCallBack.iCalls, 4);
        EXPECT_EQ(oCallBack.iEnds, 0);
        EXPECT_TRUE(oFactory.IsAttached(&oCallBack));
    }
    EXPECT_EQ(oCallBack.iEnds, 1);
}
