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

    /// Loads what the file names. Code 2 for a library that cannot be loaded, and for one without the
    /// processor; what was loaded before stays.
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
