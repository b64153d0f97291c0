#include "AssertionTest.h"
#include "TestMessages.h"

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

MessageProcessor * CreateNothing()
{
    return nullptr;
}

/// A factory that a test may end.
class OwnFactory : public Factory<int, ProductCreator<MessageProcessor, MessageProcessor * (*)()>,
                       CriticalSectionMutex, bool>
{
public:
    static OwnFactory & Instance(OwnFactory * (*)()) { return *pInstance; }

    static inline std::unique_ptr<OwnFactory> pInstance;
};

/// Counts what it is told. Attaches itself to nothing.
class CountingCallBack : public OwnFactory::Observer
{
public:
    void Invoke(OwnFactory::Args const &, bool &) override { ++iCalls; }
    void HandlerDestruction() const override { ++iEnds; }

    int iCalls = 0;
    mutable int iEnds = 0;
};

class AttachedCallBack : public SelfRegistrationFactoryCallBack<OwnFactory>
{
public:
    void Invoke(OwnFactory::Args const &, bool &) override { ++iCalls; }

    int iCalls = 0;
};

} // namespace

TEST(FactoryEntries, TellTheirObserversOfEveryChange)
{
    MessageProcessorFactory & oFactory = MessageProcessorFactory::Instance();
    NotingCallBack oCallBack;
    oCallBack.fDo = [&](auto &) { EXPECT_TRUE(oFactory.IsAttached(&oCallBack)); };
    bool bFlag = false;
    EXPECT_TRUE(oFactory.Register("t", &CreateTestProcessor, bFlag));
    EXPECT_FALSE(bFlag) << "two notifications, each of which has turned it";
    EXPECT_FALSE(oFactory.Register("t", &CreateNothing, bFlag));
    EXPECT_TRUE(bFlag);

    std::unique_ptr<MessageProcessor> const pProcessor(oFactory.CreateProcessor("t"));
    EXPECT_NE(dynamic_cast<TestProcessor *>(pProcessor.get()), nullptr) << "the first function stays";

    oFactory.Unregister("t");
    oFactory.Unregister("t");
    EXPECT_FALSE(oFactory.IsRegistered("t"));
    EXPECT_EQ(oFactory.CreateProcessor("t"), nullptr);
    EXPECT_EQ(oCallBack.sNotes, "t:1 t:2 t:1 t:4 t:8 t:4 t:8 ");
}

TEST(FactoryTables, FindWhatAMapFinds)
{
    using Function = int (*)();
    Function const aFunctions[] = {[] { return 1; }, [] { return 2; }};
    TesselDetails::FactoryTable<int, Function> oTable;
    std::map<int, Function> oModel;
    std::mt19937 oRandom(3);
    for (std::size_t i = 0; i < 5'000; ++i)
    {
        // Keys that meet in the same place of the table, negative ones among them.
        int const iKey = (static_cast<int>(oRandom() % 300) - 150) * 16;
        if (i % 3 == 0)
        {
            oTable.Erase(iKey);
            oModel.erase(iKey);
        }
        else
            ASSERT_EQ(
                oTable.Insert(iKey, aFunctions[i % 2]), oModel.insert({iKey, aFunctions[i % 2]}).second);
    }
    TesselDetails::FactoryTable<int, Function> oCopy;
    oCopy = TesselDetails::FactoryTable<int, Function>(oTable);
    oTable.Erase(oModel.begin()->first);
    for (int iKey = -2'500; iKey < 2'500; ++iKey)
        EXPECT_EQ(oCopy.Find(iKey), oModel.contains(iKey) ? oModel[iKey] : nullptr) << iKey;
    EXPECT_EQ(oTable.Find(oModel.begin()->first), nullptr);
}

TEST(FactoryTables, AreReadWhileTheyGrow)
{
    TesselDetails::FactoryTable<std::string, MessageProcessor * (*)()> oTable;
    EXPECT_TRUE(oTable.Insert("stays", &CreateTestProcessor));
    std::atomic<bool> bDone{false};
    auto oReader = std::async(std::launch::async,
        [&]
        {
            int iMissed = 0;
            while (!bDone)
                iMissed += oTable.Find("stays") == &CreateTestProcessor && !oTable.Find("never") ? 0 : 1;
            return iMissed;
        });
    for (int i = 0; i < 3'000; ++i)
    {
        EXPECT_TRUE(oTable.Insert(std::to_string(i), &CreateNothing));
        oTable.Erase(std::to_string(i / 2));
    }
    bDone = true;
    EXPECT_EQ(oReader.get(), 0);
}

TEST(FactoryMisuse, NamesFactoryKeyAndFunction)
{
    MessageProcessorFactory & oFactory = MessageProcessorFactory::Instance();
    NotingCallBack oCallBack;
    std::string const sFailure = Catch([&] { oFactory.Register("t", nullptr); }).GetText();
    EXPECT_NE(sFailure.find("Info: \"class tsl::MessageProcessorFactory::Register("), sFailure.npos)
        << sFailure;
    EXPECT_TRUE(sFailure.ends_with(") : pFunc is NULL!\"")) << sFailure;
    EXPECT_EQ(oCallBack.sNotes, "");
    EXPECT_TRUE(Asserts("pProduct",
        "class tsl::MessageProcessorFactory::DeleteInstance(class tsl::MessageProcessor) : pProduct is NULL!",
        [&] { oFactory.DeleteProduct(nullptr); }));
    EXPECT_EQ(Catch([&] { oFactory.Attach(nullptr); }).GetResult().GetErrorCode(), -1);
    EXPECT_EQ(Catch([&] { oFactory.Detatch(nullptr); }).GetResult().GetErrorCode(), -1);
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
    OwnFactory::pInstance = std::make_unique<OwnFactory>();
    AttachedCallBack oOutliving;
    CountingCallBack oOther;
    {
        AttachedCallBack oShort;
        OwnFactory oAssigned;
        oAssigned.Attach(&oOther);
        {
            OwnFactory oCopy(*OwnFactory::pInstance);
            oAssigned = oCopy;
            EXPECT_TRUE(oCopy.Register(1, &CreateTestProcessor));
            EXPECT_TRUE(oAssigned.Register(1, &CreateTestProcessor));
            EXPECT_EQ(oOutliving.iCalls, 4);
            EXPECT_EQ(oOther.iCalls, 2);
        }
        OwnFactory(oAssigned).Detatch(&oOther);
        EXPECT_EQ(oOther.iEnds, 0);
        EXPECT_TRUE(oAssigned.IsAttached(&oOther));
    }
    EXPECT_EQ(oOther.iEnds, 1);

    // The short one has detached itself, since the ends of the copies did not make it believe otherwise.
    EXPECT_TRUE(OwnFactory::pInstance->Register(1, &CreateTestProcessor));
    EXPECT_EQ(oOutliving.iCalls, 6);
    OwnFactory::pInstance.reset(); // what is no more is not detached from
}
