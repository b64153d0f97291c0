#include <tessel/Tessel.h>

#include <iostream>
#include <memory>

namespace
{

constexpr int CENSUS_TASK_ID = 1000;

/// A machine whose one task comes from the plug-in.
class CensusMachine : public tsl::TaskProcessor
{
public:
    CensusMachine() : TaskProcessor("CensusMachine", nullptr)
    {
        // These transitions are valid.
        static_cast<void>(m_oTransitions.AddTransition(TASK_INIT, TR_PROCEED, CENSUS_TASK_ID));
        static_cast<void>(m_oTransitions.AddTransition(CENSUS_TASK_ID, TR_PROCEED, TASK_FINE));
    }

    int GetTaskID() const override { return 0; }
    tsl::TaskTransitionList const & GetTaskTransitionList() const override { return m_oTransitions; }

private:
    tsl::TaskTransitionList m_oTransitions;
};

/// Has the plug-in's processor count some messages and its task report the count. Another plug-in may be named, so
/// everything is checked.
tsl::Result UsePlugin()
{
    std::unique_ptr<tsl::MessageProcessor> const pCensus(
        tsl::MessageProcessorFactory::Instance().CreateProcessor("Census"));
    if (!pCensus || !tsl::TaskFactory::Instance().IsRegistered(CENSUS_TASK_ID))
        return tsl::MakeResult(tsl::ERR::eNotFound, "The plug-in takes no census.");

    tsl::Result oResult =
        tsl::Support::GetAppDisp().Register(*pCensus, {tsl::DebugMessage::GetStaticClassDesc().GetClassId()});
    if (oResult.IsError())
        return oResult;
    for (char const * sText : {"one", "two", "three"})
        tsl::Support::DispatchDebugMessage("plugin", sText, __FILE__, __LINE__);
    tsl::Support::GetAppDisp().Unregister(*pCensus);

    tsl::TaskContext oContext(new CensusMachine);
    oContext.Process();
    std::unique_ptr<tsl::Message> const pAnswer(oContext.ReadMessage());
    if (auto const * const pText = dynamic_cast<tsl::DebugMessage const *>(pAnswer.get()))
        std::cout << "The census: " << pText->GetText().s_str() << " messages\n";
    return oResult;
}

void ShowFactory()
{
    bool const bKnown = tsl::MessageProcessorFactory::Instance().IsRegistered("Census");
    std::cout << "A census can be taken: " << (bKnown ? "yes" : "no") << '\n';
}

} // namespace

int main(int iCount, char ** pArguments)
{
    tsl::LibraryProxy oPlugin(iCount > 1 ? pArguments[1] : "census");
    ShowFactory();
    tsl::Result oResult = oPlugin.Load();
    if (oResult.IsOk())
    {
        ShowFactory();
        oResult = UsePlugin();
        oPlugin.Unload();
        ShowFactory();
    }
    if (oResult.IsError())
        std::cerr << "plugin: " << oResult.GetTextWithCauses().c_str() << '\n';
    return oResult.GetErrorCode();
}
