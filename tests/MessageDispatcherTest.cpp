#include "TestClient.h"
#include "TestPrelude.h"

#include <barrier>

using namespace tsl;
using namespace tsltest;

namespace
{

unsigned int const g_iNumber = NumberMessage::GetStaticClassDesc().GetClassId();
unsigned int const g_iDebug = DebugMessage::GetStaticClassDesc().GetClassId();
unsigned int const g_iBase = Message::GetBaseType();

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

} // namespace

TEST(DispatcherDelivery, GoesToTheExactTypeAndThenToTheBaseOncePerList)
{
    std::string sOrder;
    TestProcessor const oBase([&](auto &, auto &) { sOrder += "base "; });
    TestProcessor const oExact([&](auto &, auto &) { sOrder += "exact "; });
    TestProcessor const oOther;
    OpenDispatcher oDispatcher;
    Register(oDispatcher, oExact, g_iNumber);
    Register(oDispatcher, oExact, g_iNumber);
    Register(oDispatcher, oBase, g_iBase);
    Register(oDispatcher, oOther, g_iDebug);
    EXPECT_TRUE(Dispatch(oDispatcher).IsOk());
    EXPECT_EQ(sOrder, "exact base ");

    Register(oDispatcher, oBase, g_iNumber);
    EXPECT_EQ(oDispatcher.GetTypes(oBase), (std::vector{g_iBase, g_iNumber}));
    oDispatcher.Unregister(oExact);
    sOrder.clear();
    Dispatch(oDispatcher);
    EXPECT_EQ(sOrder, "base base ");
    oDispatcher.Unregister(oBase, {0, 4000000000u, g_iNumber});
    EXPECT_EQ(oDispatcher.GetTypes(oBase), std::vector{g_iBase});
}

TEST(DispatcherDelivery, StopsAfterTheDirectBaseOfADeepMessageAndSaysSo)
{
    TestProcessor const aRow[3];
    MessageDispatcher oDispatcher;
    Register(oDispatcher, aRow[0], DeepMessage::GetStaticClassDesc().GetClassId());
    Register(oDispatcher, aRow[1], g_iNumber);
    Register(oDispatcher, aRow[2], g_iBase);

    Result oResult(9, "left by the caller", Result::eCategoryDefault);
    oDispatcher.Process(DeepMessage(), oResult);
    EXPECT_EQ(aRow[0].GetCalls(), 1);
    EXPECT_EQ(aRow[1].GetCalls(), 1);
    EXPECT_EQ(aRow[2].GetCalls(), 0);
    EXPECT_EQ(oResult.GetErrorCode(), 6);
    EXPECT_EQ(oResult.GetCategory(), Result::eCategoryFault);
    EXPECT_TRUE(Contains(Tell(oResult), "class tsltest::DeepMessage"));
    EXPECT_TRUE(Tell(oResult).ends_with(" <- 9 left by the caller"));
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
    EXPECT_EQ(aRow[2].GetCalls(), 0) << "the rest of the list";
}

TEST(DispatcherReentry, ServesWhatIsBehindThePresentPlace)
{
    // The change happens inside the call of processor 1. Of the four, the first is not registered.
    Rows<char const *, std::function<void(MessageDispatcher &, TestProcessor *)>, std::vector<int>> aRows = {
        {"removes the next", [](auto & oBus, auto pRow) { oBus.Unregister(pRow[2]); }, {0, 1, 0, 1}},
        {"adds in front", [](auto & oBus, auto pRow) { Register(oBus, pRow[0], g_iNumber); }, {0, 1, 1, 1}},
        {"swaps the next two",
            [](auto & oBus, auto pRow)
            {
                oBus.Unregister(pRow[3]);
                oBus.Unregister(pRow[2]);
                Register(oBus, pRow[2], g_iNumber);
            },
            {0, 1, 1, 0}},
    };
    for (auto const & [sChange, fChange, vExpected] : aRows)
    {
        TestProcessor aRow[4];
        MessageDispatcher oDispatcher;
        for (int i = 1; i < 4; ++i)
            Register(oDispatcher, aRow[i], g_iNumber);
        aRow[1].SetWork([&, &fDo = fChange](auto &, auto &) { fDo(oDispatcher, aRow); });
        Dispatch(oDispatcher);
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_EQ(aRow[i].GetCalls(), vExpected[i]) << sChange << ", processor " << i;
    }
}

TEST(DispatcherEnd, TellsEachProcessorOncePerListWithTheLastCopy)
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
        Dispatch(oCopy);
        EXPECT_EQ(oTwice.GetCalls(), 2);
        EXPECT_TRUE(oDispatcher.SetConfig(MessageDispatcherConfig()).IsOk());
        EXPECT_THROW(static_cast<void>(oDispatcher.SetConfig(ClientConfig())), Exception);
        EXPECT_THROW(delete oDispatcher.GetCopy(), Exception);
    }
    EXPECT_EQ(oTwice.GetDestructions(), 2);
    EXPECT_EQ(oGone.GetDestructions(), 0);
}

TEST(DispatcherClient, IsRegisteredWhileItIsOpen)
{
    OpenDispatcher oDispatcher;
    {
        TestClient oClient(oDispatcher, {g_iNumber});
        Dispatch(oDispatcher);
        EXPECT_TRUE(oClient.Open().IsOk());
        Dispatch(oDispatcher);
        oClient.Close();
        Dispatch(oDispatcher);
        EXPECT_EQ(oClient.iCalls, 1);
        EXPECT_TRUE(oClient.Open().IsOk());
    }
    EXPECT_TRUE(Dispatch(oDispatcher).IsOk());
    // The types in front of a bad one stay with the bus.
    unsigned int const iRoot = Root::GetStaticClassDesc().GetClassId();
    for (unsigned int const iBad : {0u, iRoot})
    {
        SCOPED_TRACE(iBad);
        std::string const sReason =
            iBad == 0 ? "0, which no class has."
                      : std::to_string(iRoot) + ", of 'class tsl::Root', which is no message class.";
        TestClient oClient(oDispatcher, {g_iNumber, iBad, g_iBase});
        Result const oResult = oClient.Open();
        EXPECT_EQ(Tell(oResult), "2 Ungültige ClassId! <- 2 The id is " + sReason);
        EXPECT_EQ(oResult.GetCategory(), Result::eCategoryFault);
        oClient.Close();
        EXPECT_EQ(oDispatcher.GetTypes(oClient), std::vector{g_iNumber});
        oDispatcher.Unregister(oClient);
    }
}

TEST(DispatcherClient, LeavesItsBusInOrderWhateverElseItWasRegisteredWith)
{
    Rows<char const *, std::vector<unsigned int>, std::function<void(MessageDispatcher &, TestClient &)>>
        aRows = {
            {"removed by others", {g_iNumber}, [](auto & oBus, auto & oClient) { oBus.Unregister(oClient); }},
            {"a second bus", {g_iNumber},
                [](auto &, auto & o) { Register(*std::make_unique<MessageDispatcher>(), o, g_iBase); }},
        };
    for (bool const bBusFirst : {false, true})
        for (auto const & [sCase, vTypes, fHappens] : aRows)
        {
            SCOPED_TRACE(sCase);
            auto pDispatcher = std::make_unique<OpenDispatcher>();
            auto pClient = std::make_unique<TestClient>(*pDispatcher, vTypes);
            EXPECT_TRUE(pClient->Open().IsOk());
            fHappens(*pDispatcher, *pClient);
            if (bBusFirst)
            {
                pDispatcher.reset();
                EXPECT_EQ(pClient->Open().GetErrorCode(), 3);
                continue;
            }
            pClient->Close();
            EXPECT_TRUE(pDispatcher->GetTypes(*pClient).empty());
            pClient.reset();
            Dispatch(*pDispatcher);
        }
}

TEST(DispatcherThreads, RegisterUnregisterAndDispatchAtOnce)
{
    // Whoever holds a list must never be waited for by somebody who holds what it needs to register.
    TestProcessor const oSteady;
    TestProcessor oTurning;
    MessageDispatcher oDispatcher;
    oTurning.SetWork(
        [&](auto &, auto &)
        {
            oDispatcher.Unregister(oTurning);
            Register(oDispatcher, oTurning, g_iNumber);
        });
    Register(oDispatcher, oTurning, g_iNumber);
    Register(oDispatcher, oSteady, g_iBase);
    RunOnThreads(4,
        [&](int)
        {
            for (int i = 0; i < 1000; ++i)
            {
                TestProcessor const oPassing;
                EXPECT_TRUE(oDispatcher.Register(oPassing, {g_iNumber, g_iBase}).IsOk());
                Dispatch(oDispatcher);
                oDispatcher.Unregister(oPassing);
            }
        });
    EXPECT_EQ(oSteady.GetCalls(), 4000);
    EXPECT_EQ(oTurning.GetCalls(), 4000);
}

TEST(DispatcherThreads, RemoveFromInsideOfTwoDeliveriesAtOnce)
{
    using Types = std::vector<unsigned int>;
    using Action = std::function<void(MessageDispatcher &, TestClient & oOwn, TestClient & oOther)>;
    Rows<char const *, Types, Types, Action> aRows = {
        {"the other one", {g_iNumber}, {g_iDebug}, [](auto & oBus, auto &, auto & o) { oBus.Unregister(o); }},
        {"the other one, closed", {g_iNumber}, {g_iDebug}, [](auto &, auto &, auto & o) { o.Close(); }},
        {"itself", {g_iNumber, g_iDebug}, {g_iDebug, g_iNumber}, [](auto &, auto & o, auto &) { o.Close(); }},
        {"both, and dispatches", {g_iNumber}, {g_iBase},
            [](auto & oBus, auto & oOwn, auto & o)
            {
                oOwn.Close();
                o.Close();
                Dispatch(oBus, DebugMessage());
            }},
    };
    for (auto const & [sCase, vFirst, vSecond, fAct] : aRows)
        for (int i = 0; i < 50; ++i)
        {
            SCOPED_TRACE(sCase);
            OpenDispatcher oDispatcher;
            std::barrier oBothInside(2);
            std::atomic<int> iEntries{0};
            TestClient * apClients[2] = {};
            auto const fEnter = [&, &fDo = fAct](int iOwn)
            {
                // A call beyond the first two has nobody to meet.
                if (++iEntries > 2)
                    return;
                oBothInside.arrive_and_wait();
                fDo(oDispatcher, *apClients[iOwn], *apClients[1 - iOwn]);
            };
            TestClient oFirst(oDispatcher, vFirst, [&] { fEnter(0); });
            TestClient oSecond(oDispatcher, vSecond, [&] { fEnter(1); });
            apClients[0] = &oFirst;
            apClients[1] = &oSecond;
            ASSERT_TRUE(oFirst.Open().IsOk());
            ASSERT_TRUE(oSecond.Open().IsOk());
            JoinedThread const oOther([&] { Dispatch(oDispatcher, DebugMessage()); });
            Dispatch(oDispatcher, NumberMessage());
        }
}

TEST(DispatcherThreads, NobodyIsInsideOfAClientThatIsDestroyed)
{
    // Who destroys it: another thread, after the client has closed itself, or a processor of the bus.
    for (bool const bFromInside : {false, true})
        for (int i = 0; i < 20; ++i)
        {
            MessageDispatcher oDispatcher;
            std::atomic<bool> bEntered{false};
            std::atomic<bool> bInside{false};
            std::unique_ptr<TestClient> pClient;
            auto const fStayInside = [&]
            {
                bInside = true;
                if (!bFromInside)
                    pClient->Close();
                bEntered = true;
                bEntered.notify_all();
                OS::Sleep(5);
                bInside = false;
            };
            pClient = std::make_unique<TestClient>(oDispatcher, std::vector{g_iDebug, g_iBase}, fStayInside);
            ASSERT_TRUE(pClient->Open().IsOk());
            TestProcessor const oDestroyer(
                [&](auto &, auto &)
                {
                    bEntered.wait(false);
                    pClient->Close();
                    EXPECT_FALSE(bInside) << bFromInside;
                    pClient.reset();
                });
            if (bFromInside)
                Register(oDispatcher, oDestroyer, g_iNumber);
            {
                JoinedThread const oOther([&] { Dispatch(oDispatcher, DebugMessage()); });
                Result oResult;
                (bFromInside ? static_cast<MessageProcessor const &>(oDispatcher) : oDestroyer)
                    .Process(NumberMessage(), oResult);
            }
            oDispatcher.Unregister(oDestroyer);
        }
}
