#include "AssertionTest.h"
#include "TestMessages.h"

using namespace tsl;
using namespace tsltest;

namespace
{

unsigned int const g_iNumber = NumberMessage::GetStaticClassDesc().GetClassId();
unsigned int const g_iBase = Message::GetBaseType();

/// Opens what the tests look at.
class OpenDispatcher : public MessageDispatcher
{
public:
    std::vector<unsigned int> GetTypes(MessageProcessor const & oProcessor) const
    {
        std::vector<unsigned int> vTypes;
        GetRegistrations(oProcessor, vTypes);
        return vTypes;
    }
};

void Register(MessageDispatcher & oDispatcher, MessageProcessor const & oProcessor, unsigned int iType)
{
    ASSERT_TRUE(oDispatcher.Register(oProcessor, {iType}).IsOk());
}

Result Dispatch(MessageDispatcher const & oDispatcher, Message const & oMessage = NumberMessage())
{
    Result oResult;
    oDispatcher.Process(oMessage, oResult);
    return oResult;
}

class ClientConfig : public MessageDispatcherClientConfig
{
protected:
    void DoCopy(Root const &) override {}
};

class Client : public MessageDispatcherClient
{
public:
    Client(MessageDispatcher & oDispatcher, std::vector<unsigned int> const & vTypes)
        : MessageDispatcherClient(oDispatcher)
    {
        m_oConfig.SetMessageTypes(vTypes);
    }

    void Process(Message const &, Result &) const override { ++iCalls; }
    MessageProcessorConfig const & GetConfig() const override { return m_oConfig; }
    Result SetConfig(MessageProcessorConfig const &) override { return Result(); }

    mutable int iCalls = 0;

protected:
    void DoCopy(Root const &) override {}

private:
    ClientConfig m_oConfig;
};

} // namespace

TEST(DispatcherDelivery, GoesToTheExactTypeAndThenToTheBaseOncePerList)
{
    std::string sOrder;
    TestProcessor const oBase([&](auto &, auto &) { sOrder += "base "; });
    TestProcessor const oExact([&](auto &, auto &) { sOrder += "exact "; });
    TestProcessor const oOther;
    OpenDispatcher oDispatcher;
    // The larger type first: the smaller one then lies inside a table that has no list for it.
    Register(oDispatcher, oExact, g_iNumber);
    Register(oDispatcher, oExact, g_iNumber);
    Register(oDispatcher, oBase, g_iBase);
    Register(oDispatcher, oOther, DebugMessage::GetStaticClassDesc().GetClassId());
    EXPECT_TRUE(Dispatch(oDispatcher).IsOk());
    EXPECT_EQ(sOrder, "exact base ");
    EXPECT_EQ(oOther.GetCalls(), 0);

    Register(oDispatcher, oBase, g_iNumber);
    EXPECT_EQ(oDispatcher.GetTypes(oBase), (std::vector{g_iBase, g_iNumber}));
    oDispatcher.Unregister(TestProcessor());
    oDispatcher.Unregister(oBase, {0, 4000000000u});
    oDispatcher.Unregister(oExact);
    sOrder.clear();
    Dispatch(oDispatcher);
    EXPECT_EQ(sOrder, "base base ");
    oDispatcher.Unregister(oBase, {g_iNumber});
    EXPECT_EQ(oDispatcher.GetTypes(oBase), std::vector{g_iBase});
}

TEST(DispatcherDelivery, StopsAfterTheDirectBaseOfADeepMessageAndSaysSo)
{
    TestProcessor const oExact;
    TestProcessor const oDirectBase;
    TestProcessor const oTop;
    MessageDispatcher oDispatcher;
    Register(oDispatcher, oExact, DeepMessage::GetStaticClassDesc().GetClassId());
    Register(oDispatcher, oDirectBase, g_iNumber);
    Register(oDispatcher, oTop, g_iBase);

    Result oResult(9, "left by the caller", Result::eCategoryDefault);
    oDispatcher.Process(DeepMessage(), oResult);
    EXPECT_EQ(oExact.GetCalls(), 1);
    EXPECT_EQ(oDirectBase.GetCalls(), 1);
    EXPECT_EQ(oTop.GetCalls(), 0);
    EXPECT_EQ(oResult.GetCategory(), Result::eCategoryFault);
    EXPECT_TRUE(Tell(oResult).starts_with("6 ") && Tell(oResult).ends_with(" <- 9 left by the caller"));
    EXPECT_GE(oResult.GetText().Find("class tsltest::DeepMessage"), 0);
}

TEST(DispatcherFailures, PutThrownResultsInFrontAndGoOnWithTheNextList)
{
    auto const fThrow = [](int iCode)
    { return [=](auto &, auto &) { throw Exception(Result(iCode, "x", Result::eCategoryDefault)); }; };
    // An array, since a list is called in the order of the addresses.
    TestProcessor const aRow[] = {TestProcessor(), TestProcessor(fThrow(5)), TestProcessor()};
    TestProcessor const oThrowingBase(fThrow(6));
    MessageDispatcher oDispatcher;
    for (TestProcessor const & oProcessor : aRow)
        Register(oDispatcher, oProcessor, g_iNumber);
    Register(oDispatcher, oThrowingBase, g_iBase);

    EXPECT_EQ(Tell(Dispatch(oDispatcher)), "6 x <- 5 x");
    EXPECT_EQ(aRow[0].GetCalls(), 1);
    EXPECT_EQ(aRow[2].GetCalls(), 0) << "the rest of the list";
}

TEST(DispatcherReentry, ServesWhatStandsBehindThePresentPlace)
{
    // The change happens inside the call of processor 1. Of the four, the first is not registered.
    Rows<char const *, std::function<void(MessageDispatcher &, TestProcessor *)>, std::vector<int>> aRows = {
        {"nothing", [](auto &, auto) {}, {0, 1, 1, 1}},
        {"removes itself", [](auto & oBus, auto pRow) { oBus.Unregister(pRow[1]); }, {0, 1, 1, 1}},
        {"removes the next", [](auto & oBus, auto pRow) { oBus.Unregister(pRow[2]); }, {0, 1, 0, 1}},
        {"adds in front", [](auto & oBus, auto pRow) { Register(oBus, pRow[0], g_iNumber); }, {0, 1, 1, 1}},
        {"swaps the next two",
            [](auto & oBus, auto pRow)
            {
                oBus.Unregister(pRow[3]);
                oBus.Unregister(pRow[2]);
                Register(oBus, pRow[2], g_iNumber);
            },
            {0, 1, 1, 0}}};
    for (auto const & [sName, fChange, vExpected] : aRows)
    {
        TestProcessor aRow[4];
        MessageDispatcher oDispatcher;
        for (int i = 1; i < 4; ++i)
            Register(oDispatcher, aRow[i], g_iNumber);
        aRow[1].SetWork([&, &fDo = fChange](auto &, auto &) { fDo(oDispatcher, aRow); });

        Dispatch(oDispatcher);
        std::vector<int> vCalls;
        for (TestProcessor const & oProcessor : aRow)
            vCalls.push_back(oProcessor.GetCalls());
        EXPECT_EQ(vCalls, vExpected) << sName;
    }
}

TEST(DispatcherEnd, TellsEachProcessorOncePerListWhenTheLastCopyGoes)
{
    TestProcessor const oTwice;
    TestProcessor const oGone;
    {
        MessageDispatcher oDispatcher;
        MessageDispatcher const oCopy(oDispatcher);
        Register(oDispatcher, oTwice, g_iNumber);
        Register(oDispatcher, oTwice, g_iBase);
        Register(oDispatcher, oGone, g_iNumber);
        oDispatcher.Unregister(oGone);
        oDispatcher = MessageDispatcher();
        EXPECT_EQ(oTwice.GetDestructions(), 0);
        Dispatch(oCopy);
        EXPECT_EQ(oTwice.GetCalls(), 2);
    }
    EXPECT_EQ(oTwice.GetDestructions(), 2);
    EXPECT_EQ(oGone.GetDestructions(), 0);
}

TEST(DispatcherClient, IsRegisteredWhileItIsOpen)
{
    OpenDispatcher oDispatcher;
    {
        Client oClient(oDispatcher, {g_iNumber});
        Dispatch(oDispatcher);
        EXPECT_TRUE(oClient.Open().IsOk());
        Dispatch(oDispatcher);
        oClient.Close();
        oClient.Close();
        Dispatch(oDispatcher);
        EXPECT_EQ(oClient.iCalls, 1);
        EXPECT_TRUE(oClient.Open().IsOk());
    }
    EXPECT_TRUE(Dispatch(oDispatcher).IsOk());

    auto pDispatcher = std::make_unique<OpenDispatcher>();
    Client oSurvivor(*pDispatcher, {g_iNumber, g_iBase});
    EXPECT_TRUE(oSurvivor.Open().IsOk());
    pDispatcher.reset();
    oSurvivor.Close();

    // The types in front of a bad one stay with the bus.
    for (unsigned int const iBad : {0u, 4000000000u, Root::GetStaticClassDesc().GetClassId()})
    {
        Client oClient(oDispatcher, {g_iNumber, iBad, g_iBase});
        Result const oResult = oClient.Open();
        EXPECT_EQ(Tell(oResult), "2 Ungültige ClassId!") << iBad;
        EXPECT_EQ(oResult.GetCategory(), Result::eCategoryFault) << iBad;
        oClient.Close();
        EXPECT_EQ(oDispatcher.GetTypes(oClient), std::vector{g_iNumber}) << iBad;
        oDispatcher.Unregister(oClient);
    }
}

TEST(DispatcherThreads, RegisterUnregisterAndDispatchAtOnce)
{
    // Whoever holds a list must never be waited for by somebody who holds what it needs to register.
    std::atomic<int> iCalls{0};
    TestProcessor const oSteady([&](auto &, auto &) { ++iCalls; });
    TestProcessor oTurning;
    MessageDispatcher oDispatcher;
    oTurning.SetWork(
        [&](auto &, auto &)
        {
            oDispatcher.Unregister(oTurning);
            EXPECT_TRUE(oDispatcher.Register(oTurning, {g_iNumber}).IsOk());
        });
    Register(oDispatcher, oTurning, g_iNumber);
    Register(oDispatcher, oSteady, g_iBase);

    constexpr int iRounds = 1000;
    RunOnThreads(4,
        [&](int)
        {
            for (int i = 0; i < iRounds; ++i)
            {
                TestProcessor const oPassing;
                EXPECT_TRUE(oDispatcher.Register(oPassing, {g_iNumber, g_iBase}).IsOk());
                Dispatch(oDispatcher);
                oDispatcher.Unregister(oPassing);
            }
        });
    EXPECT_EQ(iCalls, 4 * iRounds);
    EXPECT_EQ(oTurning.GetCalls(), 4 * iRounds);
}

TEST(DispatcherConfig, IsTakenFromItsOwnClassAlone)
{
    MessageDispatcher oDispatcher;
    EXPECT_TRUE(oDispatcher.SetConfig(MessageDispatcherConfig()).IsOk());
    EXPECT_THROW(static_cast<void>(oDispatcher.SetConfig(ClientConfig())), Exception);
    EXPECT_THROW(delete oDispatcher.GetCopy(), Exception);
}
