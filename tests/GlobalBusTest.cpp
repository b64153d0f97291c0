#include "TestPrelude.h"

using namespace tsl;
using namespace tsltest;
using namespace std::string_literals;

namespace
{

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
        {false, [] { throw Result(5, "bare", Result::eCategoryDefault); }},
        {true, [] { Exception::Throw(Result(5, "held", Result::eCategoryDefault)); }},
    };
    for (auto const & [bAnswered, fThrow] : aThrowers)
    {
        BusListener const oThrowing(
            NumberMessage::GetStaticClassDesc().GetClassId(), [&fDo = fThrow](auto &, auto &) { fDo(); });
        if (bAnswered)
            EXPECT_TRUE(Support::DispatchMessage(NumberMessage()).IsError());
        else
            EXPECT_ANY_THROW(Support::DispatchMessage(NumberMessage()));

        // Another thread could not come past a lock that was left behind.
        auto const fReport = [] { return Support::DispatchDebugMessage("Id", "free", "f.cpp", 1).IsOk(); };
        EXPECT_TRUE(std::async(std::launch::async, fReport).get());
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
    String sLine;
    DefaultMessageLayout().FormatMessage(oMessage, sLine);
    EXPECT_TRUE(sLine.s_str().ends_with(" DEB %s %n ${No} \0|"s)) << sLine.c_str();
    DefaultMessageLayout().FormatMessage(DebugMessage(), sLine);
    EXPECT_TRUE(sLine.s_str().ends_with(" DEB  ")) << "nulls leave no trace";
}
