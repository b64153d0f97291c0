#include "TestPrelude.h"

using namespace tsl;
using namespace tsltest;
using namespace std::string_literals;

namespace
{

/// A message that no layout can write.
class UnwritableMessage : public Described<UnwritableMessage, Message>
{
public:
    std::unique_ptr<AbstractNamedValueConstIterator<Value>> GetConstIterator() const override
    {
        XAssertionFailed("elements", "none to be had");
    }

protected:
    void DoCopy(Root const &) override {}
};

std::string Write(DebugMessage const & oMessage)
{
    String sLine;
    DefaultMessageLayout().FormatMessage(oMessage, sLine);
    return sLine.s_str();
}

} // namespace

TEST(GlobalBus, HearsOnceOfALayoutThatFailsAnAssertion)
{
    // The processor answers the report by what fails anew, inside of the report.
    BusListener const oWatcher(ResultMessage::GetStaticClassDesc().GetClassId(),
        [](auto &, auto &) { EXPECT_EQ(Support::DispatchMessage(UnwritableMessage()).GetErrorCode(), 6); });
    Result const oResult = Support::DispatchMessage(UnwritableMessage());
    EXPECT_EQ(Tell(oResult), "6 XAssertion. Expression \"elements\" failed. \nInfo: \"none to be had\"");
    EXPECT_EQ(oWatcher.GetCalls(), 1);
}

TEST(GlobalBus, IsFreeForOthersWhateverAProcessorThrows)
{
    // Whether the bus answers with a failure; what is no Exception passes through.
    Rows<bool, std::function<void()>> aThrowers = {
        {false, [] { throw 7; }},
        {false, [] { throw std::runtime_error("foreign"); }},
        {false, [] { throw Result(5, "bare", Result::eCategoryDefault); }},
        {true, [] { Exception::Throw(Result(5, "held", Result::eCategoryDefault)); }},
        {true, [] { XAssertionFailed("false", "Unknown"); }},
    };
    for (auto const & [bAnswered, fThrow] : aThrowers)
    {
        BusListener const oThrowing(
            NumberMessage::GetStaticClassDesc().GetClassId(), [&fDo = fThrow](auto &, auto &) { fDo(); });
        bool bFailed = false;
        try
        {
            bFailed = Support::DispatchMessage(NumberMessage()).IsError();
        }
        catch (...)
        {
        }
        EXPECT_EQ(bFailed, bAnswered);

        // Another thread could not come past a lock that was left behind.
        auto const fReport = [] { return Support::DispatchDebugMessage("Id", "free", "f.cpp", 1).IsOk(); };
        EXPECT_TRUE(std::async(std::launch::async, fReport).get());
        EXPECT_EQ(oThrowing.GetCalls(), 1);
    }
}

TEST(LogPoints, ArePassedFirstByManyThreads)
{
    std::atomic<int> iTexts{0};
    RunOnThreads(4, [&](int) { Trace("Off", [&] { return String() << ++iTexts; }); });
    EXPECT_EQ(iTexts, 0);
}

TEST(LogLine, HasTheTextAsItStands)
{
    DebugMessage oMessage{ValueString("%n ${No} \0|"s)};
    oMessage.SetIdentifier("%s");
    EXPECT_TRUE(Write(oMessage).ends_with(" DEB %s %n ${No} \0|"s)) << Write(oMessage);
    EXPECT_TRUE(Write(DebugMessage()).ends_with(" DEB  ")) << "nulls leave no trace";
}
