#pragma once

#include <tessel/Export.h>

/// Does nothing and returns 1. A program refers to it to have the library linked and loaded.
extern "C" TSL_EXPORT int InitDllTessel();
