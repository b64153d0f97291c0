#pragma once

#include <tessel/Export.h>
#include <tessel/Result.h>

#include <memory>

namespace tsl
{

class String;

/// Loads and unloads one dynamic library by its name.
///
///     tsl::LibraryProxy oPlugIn("./plugins/census"); // the file census.so
///     tsl::Result const oResult = oPlugIn.Load();
///
/// It looks up no symbols: a library is loaded for what its own initialisation does, such as registering classes
/// with the factories. What it registers it must unregister when it is unloaded. The program must not use any of
/// its code or data after that.
///
/// The name is that of the file without its ending, which is ".so" on this system. A name with a slash is a path;
/// any other is looked up by the rules of the system's loader for this library.
///
/// Any thread may call any operation. No lock of the proxy is held while a library is loaded or unloaded, so its
/// initialisation may use the proxy, report, and wait for threads that use it. The system's loader does hold a
/// lock: a second thread that loads or unloads any library waits.
class TSL_EXPORT LibraryProxy
{
public:
    LibraryProxy();
    /// Loads nothing yet. A copy of the name is kept.
    explicit LibraryProxy(String const & sName);

    /// Unloads the library if it is loaded.
    ~LibraryProxy();

    LibraryProxy(LibraryProxy const &) = delete;
    LibraryProxy & operator=(LibraryProxy const &) = delete;

    /// Unloads the library if it is loaded. A Load of the former name that still runs on another thread unloads
    /// what it has loaded.
    void SetName(String const & sName);

    /// The reference holds until the next SetName.
    String const & GetName() const;

    /// Whether this object has loaded the library and not unloaded it.
    bool IsLoaded() const;

    /// Unloads the library if it is loaded, and loads it. Code 5 if that fails for any reason, which the system
    /// gives in the history; nothing is loaded then.
    [[nodiscard]] Result Load();

    /// Does nothing if nothing is loaded. The library stays in the process while others have loaded it, too.
    void Unload();

private:
    struct Private;
    std::unique_ptr<Private> m;
};

} // namespace tsl
