#pragma once

namespace tsl
{

/// What the library does while it is loaded, before main begins, and at its end: when the process ends or when the
/// library is unloaded. The one object of this class is the only static object of the library with a constructor.
///
/// When the library is unloaded, nobody uses it any more, and all of its objects are destroyed. When the process
/// ends, other threads may still run, so the objects that they may use are not destroyed.
class LibraryLoad
{
public:
    LibraryLoad();
    ~LibraryLoad();
    LibraryLoad(LibraryLoad const &) = delete;
    LibraryLoad & operator=(LibraryLoad const &) = delete;

private:
    /// Its destructor runs after the registry of static objects has deleted the objects of the program.
    struct End
    {
        ~End();
    };

    static void RegisterEnd();
};

} // namespace tsl
