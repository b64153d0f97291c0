#pragma once

#include <tessel/Locks.h>

namespace tsl
{

/// A lock for the library's own data. While it is held, no code of the program is called and nothing is
/// reported on the bus. A debug build aborts if the bus is called under it.
class OwnMutex : public ReaderWriterMutex
{
public:
    OwnMutex();
};

} // namespace tsl
