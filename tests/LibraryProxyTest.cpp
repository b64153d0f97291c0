#include "TestMachine.h"
#include "TestPrelude.h"

using namespace tsl;
using namespace tsltest;

namespace
{

std::string const PLUGIN = TESSEL_TEST_PROGRAMS "/census";
constexpr int TASK_ID = 1000;

bool IsMapped()
{
    std::ifstream oMaps("/proc/self/maps");
    return std::string(std::istreambuf_iterator<char>(oMaps), {}).find(PLUGIN) != std::string::npos;
}

bool IsRegistered()
{
    return MessageProcessorFactory::Instance().IsRegistered("Census")
           && TaskFactory::Instance().IsRegistered(TASK_ID);
}

/// How many messages the plug-in's task tells of, after its processor has had two.
std::string TakeCensus()
{
    std::unique_ptr<MessageProcessor> const pCensus(
        MessageProcessorFactory::Instance().CreateProcessor("Census"));
    Result oResult;
    pCensus->Process(DebugMessage(), oResult);
    pCensus->Process(DebugMessage(), oResult);

    auto * const pMachine = new OneTaskMachine(nullptr);
    TaskContext oContext(pMachine);
    EXPECT_TRUE(pMachine->oTransitions.AddTransition(Task::TASK_INIT, Task::TR_PROCEED, TASK_ID).IsOk());
    EXPECT_TRUE(pMachine->oTransitions.AddTransition(TASK_ID, Task::TR_PROCEED, Task::TASK_FINE).IsOk());
    oContext.Process();
    std::unique_ptr<Message> const pAnswer(oContext.ReadMessage());
    return dynamic_cast<DebugMessage const &>(*pAnswer).GetText().s_str();
}

} // namespace

TEST(Plugins, BringWhatTheyRegisterAndLeaveTheProcessWithIt)
{
    {
        LibraryProxy oProxy(PLUGIN);
        for (int iTurn = 0; iTurn < 2; ++iTurn)
        {
            EXPECT_FALSE(oProxy.IsLoaded());
            ASSERT_TRUE(oProxy.Load().IsOk());
            EXPECT_TRUE(oProxy.IsLoaded());
            EXPECT_TRUE(IsMapped());
            EXPECT_TRUE(IsRegistered());
            EXPECT_EQ(TakeCensus(), "2");

            oProxy.Unload();
            EXPECT_FALSE(IsRegistered());
            EXPECT_FALSE(IsMapped());
        }
        ASSERT_TRUE(oProxy.Load().IsOk());
    }
    EXPECT_FALSE(IsMapped()) << "it goes with its proxy";
}

TEST(Plugins, AreUnloadedByANewNameAlsoOfWhatCannotBeLoaded)
{
    Rows<std::string, char const *> aRows = {
        {"", "No such file or directory"},
        {std::string(10'000, 'x'), "File name too long"},
        {PLUGIN + ".so/..", "Not a directory"},
    };
    for (auto const & [sName, sReason] : aRows)
    {
        LibraryProxy oProxy;
        oProxy.SetName(PLUGIN);
        ASSERT_TRUE(oProxy.Load().IsOk());
        oProxy.SetName(sName);
        EXPECT_EQ(oProxy.GetName().s_str(), sName);
        EXPECT_FALSE(oProxy.IsLoaded());
        EXPECT_FALSE(IsMapped());

        EXPECT_EQ(Tell(oProxy.Load()), "5 Could not load library '" + sName + ".so'. <- 10 " + sName
                                           + ".so: cannot open shared object file: " + sReason);
    }
}

/// Does the work when the plug-in registers what it brings, and when it takes that back.
class Observer : public MessageProcessorFactoryCallBack
{
public:
    explicit Observer(std::function<void()> fWork) : m_fWork(std::move(fWork)) {}
    void Invoke(FactoryCallBackArgs<std::string> const &, bool &) override { m_fWork(); }

private:
    std::function<void()> m_fWork;
};

TEST(Plugins, AreUnloadedAtOnceIfTheyGiveTheirProxyAnotherName)
{
    LibraryProxy oProxy(PLUGIN);
    Observer const oObserver([&] { oProxy.SetName("other"); });
    EXPECT_TRUE(oProxy.Load().IsOk());
    EXPECT_FALSE(oProxy.IsLoaded());
    EXPECT_FALSE(IsMapped());
}

TEST(Plugins, ShowTheirComingAndGoingInTheLog)
{
    TestProgram const oProgram("Reporter");
    oProgram.WriteFile("Reporter.ini", "[Debug]\nEnable=1\n[Debug/Switch]\nLibraryProxy=1\n");
    EXPECT_EQ(oProgram.Run({"load:" + PLUGIN}).sOutput, "0 0\n");

    std::string const sLoad = "T P DEB LibraryProxy Load library '" + PLUGIN + ".so'.\n";
    std::string const sUnload = "T P DEB LibraryProxy Unload library '" + PLUGIN + ".so'.\n";
    EXPECT_EQ(oProgram.ReadLog(), sLoad + sUnload + sLoad + sUnload);
}
