#pragma once

#include <tessel/ScopedLockTemplate.h>

namespace tsl
{

// Names for the library's own source files. In a public header they would hide or collide with a program's.
using TesselDetails::ReadLock;
using TesselDetails::WriteLock;

} // namespace tsl
