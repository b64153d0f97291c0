#include "TestPrelude.h"
#include "TestMessages.h"

#include <barrier>

using namespace tsl;
using namespace tsltest;

namespace
{

unsigned int const g_iNumber = NumberMessage::GetStaticClassDesc().GetClassId();
unsigned int const g_iDebug = DebugMessage::GetStaticClassDesc().GetClassId();
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
    Client(MessageDispatcher & oDispatcher, std::vector<unsigned int> const & vTypes,
        std::function<void()> fWork = {})
        : MessageDispatcherClient(oDispatcher), m_fWork(std::move(fWork))
    {
        m_oConfig.SetMessageTypes(vTypes);
    }
    ~Client() override { Close(); }

    void Process(Message const &, Result &) const override
    {
        ++iCalls;
        if (m_fWork)
            m_fWork();
    }
    MessageProcessorConfig const & GetConfig() const override { return m_oConfig; }
    Result SetConfig(MessageProcessorConfig const &) override { return Result(); }

    mutable std::atomic<int> iCalls{0};

protected:
    void DoCopy(Root const &) override {}

private:
    std::function<void()> m_fWork;
    ClientConfig m_oConfig;
};

/// Dispatches a message of each of the two types at once, on a thread each.
void DispatchBoth(MessageDispatcher const & oDispatcher)
{
    RunOnThreads(2,
        [&](int iThread)
        {
            if (iThread == 0)
                Dispatch(oDispatcher, NumberMessage());
            else
                Dispatch(oDispatcher, DebugMessage());
        });
}

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
    Register(oDispatcher, oOther, g_iDebug);
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

TEST(DispatcherClient, LeavesItsBusInOrderWhateverElseItWasRegisteredWith)
{
    Rows<char const *, std::vector<unsigned int>, std::function<void(MessageDispatcher &, Client &)>> aRows =
        {{"no types", {}, [](auto &, auto &) {}},
            {"removed by others", {g_iNumber}, [](auto & oBus, auto & oClient) { oBus.Unregister(oClient); }},
            {"registered with a second bus", {g_iNumber, g_iBase},
                [](auto &, auto & oClient)
                {
                    MessageDispatcher oSecond;
                    Register(oSecond, oClient, g_iNumber);
                }}};
    for (bool const bBusFirst : {false, true})
        for (auto const & [sName, vTypes, fHappens] : aRows)
        {
            auto pDispatcher = std::make_unique<OpenDispatcher>();
            auto pClient = std::make_unique<Client>(*pDispatcher, vTypes);
            EXPECT_TRUE(pClient->Open().IsOk());
            fHappens(*pDispatcher, *pClient);
            if (bBusFirst)
            {
                pDispatcher.reset();
                EXPECT_EQ(pClient->Open().GetErrorCode(), 3) << sName;
            }
            pClient->Close();
            EXPECT_EQ(pDispatcher ? pDispatcher->GetTypes(*pClient).size() : 0, 0u) << sName;
            pClient.reset();
            if (pDispatcher)
                Dispatch(*pDispatcher);
        }
}

TEST(DispatcherThreads, RemoveFromInsideOfTwoDeliveriesAtOnce)
{
    using Action = std::function<void(MessageDispatcher &, Client & oOwn, Client & oOther)>;
    Rows<char const *, std::vector<unsigned int>, std::vector<unsigned int>, Action> aRows = {
        {"the other one", {g_iNumber}, {g_iDebug}, [](auto & oBus, auto &, auto & o) { oBus.Unregister(o); }},
        {"the other one, closed", {g_iNumber}, {g_iDebug}, [](auto &, auto &, auto & o) { o.Close(); }},
        {"itself, of both types", {g_iNumber, g_iDebug}, {g_iDebug, g_iNumber},
            [](auto &, auto & oOwn, auto &) { oOwn.Close(); }},
        {"both", {g_iNumber}, {g_iDebug, g_iBase},
            [](auto & oBus, auto & oOwn, auto & o)
            {
                oBus.Unregister(oOwn);
                oBus.Unregister(o);
            }},
        {"and add", {g_iNumber}, {g_iDebug},
            [](auto & oBus, auto & oOwn, auto & o)
            {
                o.Close();
                EXPECT_TRUE(oBus.Register(oOwn, {g_iNumber, g_iDebug, g_iBase}).IsOk());
                oBus.Unregister(oOwn);
            }},
        {"and dispatch", {g_iNumber}, {g_iBase},
            [](auto & oBus, auto & oOwn, auto & o)
            {
                oOwn.Close();
                o.Close();
                Dispatch(oBus, DebugMessage());
            }}};
    for (auto const & [sName, vFirst, vSecond, fAct] : aRows)
        for (int i = 0; i < 50; ++i)
        {
            OpenDispatcher oDispatcher;
            std::barrier oBothInside(2);
            std::atomic<int> iEntries{0};
            Client * apClients[2] = {};
            auto const Act = [&, &fDo = fAct](int iOwn)
            {
                // A call beyond the first two has nobody to meet.
                if (++iEntries > 2)
                    return;
                oBothInside.arrive_and_wait();
                fDo(oDispatcher, *apClients[iOwn], *apClients[1 - iOwn]);
            };
            Client oFirst(oDispatcher, vFirst, [&] { Act(0); });
            Client oSecond(oDispatcher, vSecond, [&] { Act(1); });
            apClients[0] = &oFirst;
            apClients[1] = &oSecond;
            ASSERT_TRUE(oFirst.Open().IsOk() && oSecond.Open().IsOk());
            DispatchBoth(oDispatcher);
        }
}

TEST(DispatcherThreads, NobodyIsInsideOfAClientThatIsDestroyed)
{
    enum
    {
        eOutside,
        eOutsideAfterItself,
        eInside
    };
    for (int const eWhere : {eOutside, eOutsideAfterItself, eInside})
        for (int i = 0; i < 20; ++i)
        {
            MessageDispatcher oDispatcher;
            std::atomic<bool> bEntered{false};
            std::atomic<bool> bInside{false};
            std::unique_ptr<Client> pClient;
            auto const Destroy = [&]
            {
                bEntered.wait(false);
                pClient->Close();
                EXPECT_FALSE(bInside) << eWhere;
                pClient.reset();
            };
            auto const StayInside = [&]
            {
                bInside = true;
                if (eWhere == eOutsideAfterItself)
                    pClient->Close();
                bEntered = true;
                bEntered.notify_all();
                tsl::OS::Sleep(5);
                bInside = false;
            };
            pClient = std::make_unique<Client>(oDispatcher, std::vector{g_iDebug, g_iBase}, StayInside);
            ASSERT_TRUE(pClient->Open().IsOk());
            TestProcessor const oDestroyer([&](auto &, auto &) { Destroy(); });
            if (eWhere == eInside)
                Register(oDispatcher, oDestroyer, g_iNumber);

            RunOnThreads(2,
                [&](int iThread)
                {
                    if (iThread == 1)
                        Dispatch(oDispatcher, DebugMessage());
                    else if (eWhere == eInside)
                        Dispatch(oDispatcher, NumberMessage());
                    else
                        Destroy();
                });
            oDispatcher.Unregister(oDestroyer);
        }
}

TEST(DispatcherConfig, IsTakenFromItsOwnClassAlone)
{
    MessageDispatcher oDispatcher;
    EXPECT_TRUE(oDispatcher.SetConfig(MessageDispatcherConfig()).IsOk());
    EXPECT_THROW(static_cast<void>(oDispatcher.SetConfig(ClientConfig())), Exception);
    EXPECT_THROW(delete oDispatcher.GetCopy(), Exception);
}
