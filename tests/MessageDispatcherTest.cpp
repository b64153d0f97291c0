#include "AssertionTest.h"
#include "TestMessages.h"

#include <array>

using namespace tsl;
using namespace tsltest;

namespace
{

unsigned int const g_iNumber = NumberMessage::GetStaticClassDesc().GetClassId();

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

/// Processors of one list, in the order in which the list calls them.
template<std::size_t iCount>
class ProcessorRow
{
public:
    explicit ProcessorRow(MessageDispatcher & oDispatcher) : m_oDispatcher(oDispatcher)
    {
        // An array: the addresses ascend with the index.
        for (TestProcessor & oProcessor : m_aProcessors)
            Register(oDispatcher, oProcessor, g_iNumber);
    }

    ~ProcessorRow()
    {
        for (TestProcessor & oProcessor : m_aProcessors)
            m_oDispatcher.Unregister(oProcessor);
    }

    TestProcessor & operator[](std::size_t i) { return m_aProcessors[i]; }

private:
    MessageDispatcher & m_oDispatcher;
    std::array<TestProcessor, iCount> m_aProcessors;
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
    Register(oDispatcher, oBase, Message::GetBaseType());
    Register(oDispatcher, oOther, GetTypeOf(DebugMessage::GetStaticClassDesc()));
    EXPECT_TRUE(Dispatch(oDispatcher).IsOk());
    EXPECT_EQ(sOrder, "exact base ");
    EXPECT_EQ(oOther.GetCalls(), 0);

    Register(oDispatcher, oBase, g_iNumber);
    EXPECT_EQ(oDispatcher.GetTypes(oBase), (std::vector{Message::GetBaseType(), g_iNumber}));
    oDispatcher.Unregister(TestProcessor());
    oDispatcher.Unregister(oBase, {0, 4000000000u});
    oDispatcher.Unregister(oExact);
    sOrder.clear();
    Dispatch(oDispatcher);
    EXPECT_EQ(sOrder, "base base ");
    oDispatcher.Unregister(oBase, {g_iNumber});
    EXPECT_EQ(oDispatcher.GetTypes(oBase), std::vector{Message::GetBaseType()});
}

TEST(DispatcherDelivery, StopsAfterTheDirectBaseOfADeepMessageAndSaysSo)
{
    TestProcessor const oExact;
    TestProcessor const oDirectBase;
    TestProcessor const oTop;
    MessageDispatcher oDispatcher;
    Register(oDispatcher, oExact, GetTypeOf(DeepMessage::GetStaticClassDesc()));
    Register(oDispatcher, oDirectBase, g_iNumber);
    Register(oDispatcher, oTop, Message::GetBaseType());

    Result oResult(9, "left by the caller", Result::eCategoryDefault);
    oDispatcher.Process(DeepMessage(), oResult);
    EXPECT_EQ(oExact.GetCalls(), 1);
    EXPECT_EQ(oDirectBase.GetCalls(), 1);
    EXPECT_EQ(oTop.GetCalls(), 0);
    EXPECT_EQ(oResult.GetErrorCode(), 6);
    EXPECT_EQ(oResult.GetCategory(), Result::eCategoryFault);
    EXPECT_GE(oResult.GetText().Find("class tsltest::DeepMessage"), 0);
    ASSERT_EQ(oResult.GetHistorySize(), 1);
    EXPECT_EQ(oResult.GetHistory(0).GetErrorCode(), 9);
}

TEST(DispatcherRegistration, TakesTheTypesInFrontOfABadOne)
{
    for (unsigned int const iBad : {0u, 4000000000u, Root::GetStaticClassDesc().GetClassId()})
    {
        TestProcessor const oProcessor;
        OpenDispatcher oDispatcher;
        Result const oResult = oDispatcher.Register(oProcessor, {g_iNumber, iBad, Message::GetBaseType()});
        EXPECT_EQ(oResult.GetErrorCode(), 2) << iBad;
        EXPECT_EQ(oResult.GetCategory(), Result::eCategoryFault) << iBad;
        EXPECT_EQ(oResult.GetText(), "Ungültige ClassId!") << iBad;
        EXPECT_EQ(oDispatcher.GetTypes(oProcessor), std::vector{g_iNumber}) << iBad;
    }
}

TEST(DispatcherFailures, PutThrownResultsInFrontAndGoOnWithTheNextList)
{
    auto const fThrow = [](int iCode)
    { return [=](auto &, auto &) { throw Exception(Result(iCode, "x", Result::eCategoryDefault)); }; };
    TestProcessor const oThrowingBase(fThrow(6));
    MessageDispatcher oDispatcher;
    ProcessorRow<3> oRow(oDispatcher);
    oRow[1].SetWork(fThrow(5));
    Register(oDispatcher, oThrowingBase, Message::GetBaseType());

    Result const oResult = Dispatch(oDispatcher);
    EXPECT_EQ(oResult.GetErrorCode(), 6);
    ASSERT_EQ(oResult.GetHistorySize(), 1);
    EXPECT_EQ(oResult.GetHistory(0).GetErrorCode(), 5);
    EXPECT_EQ(oRow[0].GetCalls(), 1);
    EXPECT_EQ(oRow[2].GetCalls(), 0) << "the rest of the list";
}

TEST(DispatcherReentry, ServesWhatStandsBehindThePresentPlace)
{
    // The change happens inside the call of processor 1. Of the four, the first is not registered.
    Rows<char const *, std::function<void(MessageDispatcher &, ProcessorRow<4> &)>, std::vector<int>> aRows =
        {{"nothing", [](auto &, auto &) {}, {0, 1, 1, 1}},
            {"removes itself", [](auto & oBus, auto & oRow) { oBus.Unregister(oRow[1]); }, {0, 1, 1, 1}},
            {"removes the next", [](auto & oBus, auto & oRow) { oBus.Unregister(oRow[2]); }, {0, 1, 0, 1}},
            {"adds in front", [](auto & oBus, auto & oRow) { Register(oBus, oRow[0], g_iNumber); },
                {0, 1, 1, 1}},
            {"swaps the next two",
                [](auto & oBus, auto & oRow)
                {
                    oBus.Unregister(oRow[3]);
                    oBus.Unregister(oRow[2]);
                    Register(oBus, oRow[2], g_iNumber);
                },
                {0, 1, 1, 0}}};
    for (auto const & [sName, fChange, vExpected] : aRows)
    {
        MessageDispatcher oDispatcher;
        ProcessorRow<4> oRow(oDispatcher);
        oDispatcher.Unregister(oRow[0]);
        oRow[1].SetWork([&, &fDo = fChange](auto &, auto &) { fDo(oDispatcher, oRow); });

        Dispatch(oDispatcher);
        std::vector<int> vCalls;
        for (std::size_t i = 0; i < 4; ++i)
            vCalls.push_back(oRow[i].GetCalls());
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
        Register(oDispatcher, oTwice, Message::GetBaseType());
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

namespace
{

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

    // The types of a failed open stay with the bus.
    Client oClient(oDispatcher, {g_iNumber, 0});
    EXPECT_EQ(oClient.Open().GetErrorCode(), 2);
    oClient.Close();
    EXPECT_EQ(oDispatcher.GetTypes(oClient), std::vector{g_iNumber});
    oDispatcher.Unregister(oClient);
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
    Register(oDispatcher, oSteady, Message::GetBaseType());

    constexpr int iRounds = 1000;
    RunOnThreads(4,
        [&](int)
        {
            for (int i = 0; i < iRounds; ++i)
            {
                TestProcessor const oPassing;
                EXPECT_TRUE(oDispatcher.Register(oPassing, {g_iNumber, Message::GetBaseType()}).IsOk());
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
