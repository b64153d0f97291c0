#pragma once

namespace tsl
{

/// What the library does while it is loaded, before the program's first line, and while it is unloaded.
/// The one object of this class is the only static object of the library with a constructor.
class LibraryLoad
{
public:
    LibraryLoad();
    ~LibraryLoad();
    LibraryLoad(LibraryLoad const &) = delete;
    LibraryLoad & operator=(LibraryLoad const &) = delete;
};

} // namespace tsl
