#pragma once

#include <tessel/Export.h>

/// Does nothing and returns 1. A program calls it so that the linker keeps the library and the system loads it.
extern "C" TSL_EXPORT int InitDllTessel();
