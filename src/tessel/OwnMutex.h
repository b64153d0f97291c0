#pragma once

#include <tessel/Locks.h>

namespace tsl
{

/// A lock of an object of the library under which nothing of the program is called and nothing is reported. A
/// debug build stops at a report under it.
class OwnMutex : public ReaderWriterMutex
{
public:
    OwnMutex();
};

} // namespace tsl
