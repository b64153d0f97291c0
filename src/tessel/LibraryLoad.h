#pragma once

namespace tsl
{

/// What the library does while it is loaded, before the program's first line, and at its end, which is that of
/// the process or comes when the library is unloaded. The one object of this class is the only static object of
/// the library with a constructor.
///
/// When the library is unloaded, nobody uses it any more, and nothing is left of it. When the process ends, other
/// threads may go on: what they may use stays, until the process is gone.
class LibraryLoad
{
public:
    LibraryLoad();
    ~LibraryLoad();
    LibraryLoad(LibraryLoad const &) = delete;
    LibraryLoad & operator=(LibraryLoad const &) = delete;

private:
    /// Runs when the registry of static objects has deleted the objects of the program.
    struct End
    {
        ~End();
    };

    static void RegisterEnd();
};

} // namespace tsl
