#pragma once

// The system's header, without the macros that have the names of functions of the seam.

#include <windows.h>

#undef LoadLibrary
#undef Yield
