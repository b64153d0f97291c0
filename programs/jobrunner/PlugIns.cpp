#include "PlugIns.h"

#include <tessel/GlobalMessageDispatcher.h>
#include <tessel/IniFile.h>
#include <tessel/Message.h>
#include <tessel/MessageProcessorFactory.h>
#include <tessel/Support.h>

#include <utility>

PlugIns::~PlugIns()
{
    // Delete the processor first: its code is in the library.
    for (PlugIn & oPlugIn : m_vPlugIns)
    {
        tsl::Support::GetAppDisp().Unregister(*oPlugIn.pProcessor);
        oPlugIn.pProcessor->Close();
        oPlugIn.pProcessor.reset();
    }
}

tsl::Result PlugIns::Load(tsl::IniFile const & oFile)
{
    std::vector<tsl::String> vProcessors;
    if (oFile.GetKeys("Plugins", vProcessors).IsError())
        return tsl::Result(); // The chapter may be missing.
    for (tsl::String const & sProcessor : vProcessors)
    {
        tsl::String sLibrary;
        static_cast<void>(oFile.GetString("Plugins", sProcessor, sLibrary)); // The key is there.
        if (tsl::Result oResult = LoadOne(sProcessor, sLibrary); oResult.IsError())
            return tsl::MakeResult(tsl::ERR::eBadData,
                tsl::String("[Plugins] ") + sProcessor
                    + ": The plug-in cannot be used. A name without a slash is looked for as the system "
                      "looks for libraries.",
                oResult);
    }
    return tsl::Result();
}

tsl::Result PlugIns::LoadOne(tsl::String const & sProcessor, tsl::String const & sLibrary)
{
    PlugIn oPlugIn;
    oPlugIn.pLibrary = std::make_unique<tsl::LibraryProxy>(sLibrary);
    if (tsl::Result oResult = oPlugIn.pLibrary->Load(); oResult.IsError())
        return oResult;

    oPlugIn.pProcessor.reset(tsl::MessageProcessorFactory::Instance().CreateProcessor(sProcessor.s_str()));
    if (!oPlugIn.pProcessor)
        return tsl::MakeResult(
            tsl::ERR::eNotFound, tsl::String("'") + sLibrary + "' has no processor '" + sProcessor + "'.");
    if (tsl::Result oResult = oPlugIn.pProcessor->Open(); oResult.IsError())
        return oResult;
    tsl::Result oResult = tsl::Support::GetAppDisp().Register(
        *oPlugIn.pProcessor, {tsl::Message::GetStaticClassDesc().GetClassId()});
    if (oResult.IsOk())
        m_vPlugIns.push_back(std::move(oPlugIn));
    return oResult;
}
