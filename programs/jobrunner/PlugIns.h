#pragma once

#include <tessel/LibraryProxy.h>
#include <tessel/MessageProcessor.h>

#include <memory>
#include <vector>

namespace tsl
{
class IniFile;
}

/// Loads processors from plug-ins and registers them with the global bus.
///
///     [Plugins]
///     ProcessorName=library name without its ending
///
/// A library registers its processor under that name with tsl::MessageProcessorFactory when it is loaded.
class PlugIns
{
public:
    PlugIns() = default;
    PlugIns(PlugIns const &) = delete;
    PlugIns & operator=(PlugIns const &) = delete;

    /// Unloads all plug-ins.
    ~PlugIns();

    /// Loads the plug-ins of the file. Code 5 for a library that cannot be loaded or does not have the processor;
    /// those that were loaded before remain.
    tsl::Result Load(tsl::IniFile const & oFile);

private:
    struct PlugIn
    {
        std::unique_ptr<tsl::LibraryProxy> pLibrary;
        std::unique_ptr<tsl::MessageProcessor> pProcessor;
    };

    tsl::Result LoadOne(tsl::String const & sProcessor, tsl::String const & sLibrary);

    std::vector<PlugIn> m_vPlugIns;
};
