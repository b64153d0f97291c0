#pragma once

#include <tessel/Export.h>
#include <tessel/Result.h>

#include <memory>

namespace tsl
{

class String;

/// Loads and unloads one dynamic library by its name.
///
/// No symbol of it can be looked up: a library is loaded for what its own initialisation does, such as
/// registering classes with the factories, and what it registers then it has to unregister when it is
/// unloaded. Whatever of its code or data is still in use at that moment is a fault of the program.
///
/// The name is that of the file without its ending, ".so" on this system. A name with a slash is a path; a
/// bare one is looked for by the rules of the system's loader, as those of this library.
///
/// Any thread may call any operation. None holds a lock of the proxy while a library is loaded or unloaded, so
/// the library's own initialisation may use the proxy, report, and wait for threads that use it. The system's
/// loader does have a lock then: another thread that loads or unloads any library waits for it.
class TSL_EXPORT LibraryProxy
{
public:
    LibraryProxy();
    explicit LibraryProxy(String const & sName);

    /// Unloads what is loaded.
    ~LibraryProxy();

    LibraryProxy(LibraryProxy const &) = delete;
    LibraryProxy & operator=(LibraryProxy const &) = delete;

    /// Unloads what is loaded, and so does a Load of the former name that another thread has not ended yet.
    void SetName(String const & sName);

    /// Holds until the next SetName.
    String const & GetName() const;

    bool IsLoaded() const;

    /// Loads the library, after unloading what is loaded. Code 5 if that is impossible for any reason;
    /// nothing is loaded then.
    [[nodiscard]] Result Load();

    /// Does nothing if nothing is loaded. The library leaves the process unless others have loaded it too.
    void Unload();

private:
    struct Private;
    std::unique_ptr<Private> m;
};

} // namespace tsl
