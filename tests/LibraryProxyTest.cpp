#include "AssertionTest.h"
#include "ProcessTest.h"

using namespace tsl;

namespace
{

String const PLUGIN = String(TESSEL_TEST_PROGRAMS) + "/census";
constexpr int TASK_ID = 1000;

/// Whether any of the file's code or data is in the process.
bool IsMapped(String const & sFile)
{
    std::ifstream oMaps("/proc/self/maps");
    std::string const sMaps{std::istreambuf_iterator<char>(oMaps), {}};
    return sMaps.find(sFile.s_str()) != std::string::npos;
}

bool IsRegistered()
{
    return MessageProcessorFactory::Instance().IsRegistered("Census")
           && TaskFactory::Instance().IsRegistered(TASK_ID);
}

class CensusMachine : public TaskProcessor
{
public:
    CensusMachine() : TaskProcessor("CensusMachine", nullptr)
    {
        EXPECT_TRUE(m_oTransitions.AddTransition(TASK_INIT, TR_PROCEED, TASK_ID).IsOk());
        EXPECT_TRUE(m_oTransitions.AddTransition(TASK_ID, TR_PROCEED, TASK_FINE).IsOk());
    }

    int GetTaskID() const override { return 0; }
    TaskTransitionList const & GetTaskTransitionList() const override { return m_oTransitions; }

private:
    TaskTransitionList m_oTransitions;
};

/// How many messages the plug-in's task tells of, after its processor has had two.
String TakeCensus()
{
    std::unique_ptr<MessageProcessor> const pCensus(
        MessageProcessorFactory::Instance().CreateProcessor("Census"));
    Result oResult;
    pCensus->Process(DebugMessage(), oResult);
    pCensus->Process(DebugMessage(), oResult);

    TaskContext oContext(new CensusMachine);
    oContext.Process();
    std::unique_ptr<Message> const pAnswer(oContext.ReadMessage());
    return dynamic_cast<DebugMessage const &>(*pAnswer).GetText().s_str();
}

TEST(Plugins, BringWhatTheyRegisterAndLeaveTheProcessWithIt)
{
    LibraryProxy oProxy(PLUGIN);
    EXPECT_FALSE(oProxy.IsLoaded());
    for (int iTurn = 0; iTurn < 3; ++iTurn)
    {
        ASSERT_TRUE(oProxy.Load().IsOk());
        EXPECT_TRUE(oProxy.IsLoaded());
        EXPECT_TRUE(IsMapped(PLUGIN));
        EXPECT_TRUE(IsRegistered());
        EXPECT_EQ(TakeCensus().s_str(), "2");

        // Loaded anew, it has forgotten what it had counted.
        ASSERT_TRUE(oProxy.Load().IsOk());
        EXPECT_EQ(TakeCensus().s_str(), "2");

        oProxy.Unload();
        EXPECT_FALSE(oProxy.IsLoaded());
        EXPECT_FALSE(IsRegistered());
        EXPECT_FALSE(IsMapped(PLUGIN));
    }
}

TEST(Plugins, AreUnloadedByANewNameAndByTheEndOfTheirProxy)
{
    {
        LibraryProxy oProxy;
        oProxy.SetName(PLUGIN);
        ASSERT_TRUE(oProxy.Load().IsOk());
        oProxy.SetName("other");
        EXPECT_EQ(oProxy.GetName().s_str(), "other");
        EXPECT_FALSE(oProxy.IsLoaded());
        EXPECT_FALSE(IsMapped(PLUGIN));

        oProxy.SetName(PLUGIN);
        ASSERT_TRUE(oProxy.Load().IsOk());
    }
    EXPECT_FALSE(IsMapped(PLUGIN));
}

TEST(Plugins, ThatCannotBeLoadedLeaveNothingLoaded)
{
    for (std::string const & sName : {std::string(), std::string("no such library"), std::string(10'000, 'x'),
             std::string(TESSEL_TEST_PROGRAMS)})
    {
        LibraryProxy oProxy(PLUGIN);
        ASSERT_TRUE(oProxy.Load().IsOk());
        oProxy.SetName(sName);
        Result const oResult = oProxy.Load();
        EXPECT_EQ(oResult.GetErrorCode(), 5) << sName;
        EXPECT_EQ(oResult.GetText().s_str(), "Could not load library '" + sName + ".so'.");
        EXPECT_FALSE(oProxy.IsLoaded()) << sName;
        oProxy.Unload();
    }
}

TEST(Plugins, ShowTheirComingAndGoingInTheLog)
{
    tsltest::TestProgram const oProgram("Reporter");
    oProgram.WriteFile("Reporter.ini", "[Debug]\nEnable=1\n[Debug/Switch]\nLibraryProxy=1\n");
    EXPECT_EQ(oProgram.Run({"load:" + PLUGIN.s_str()}).sOutput, "0\n");

    std::string const sLog = oProgram.ReadFile("Logfile.txt");
    std::size_t const iLoad = sLog.find("LibraryProxy Load library '" + PLUGIN.s_str() + ".so'.");
    EXPECT_NE(iLoad, std::string::npos);
    std::size_t const iUnload = sLog.find("LibraryProxy Unload library '" + PLUGIN.s_str() + ".so'.", iLoad);
    EXPECT_NE(iUnload, std::string::npos);
    EXPECT_EQ(sLog.find("Unload", iUnload + 20), std::string::npos);
}

} // namespace
