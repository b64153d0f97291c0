#pragma once

#include <tessel/ScopedLockTemplate.h>

namespace tsl
{

// For the library's own source files. In a public header these names would collide with a program's.
using TesselDetails::ReadLock;
using TesselDetails::WriteLock;

} // namespace tsl
