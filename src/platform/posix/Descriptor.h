#pragma once

#include "platform/Platform.h"

namespace tsl::Platform
{

/// The descriptors below are those of the three standard streams.
inline constexpr int FIRST_OWN_DESCRIPTOR = 3;

/// What the system calls the file.
inline int GetHandle(File const & oFile)
{
    return static_cast<int>(oFile.iHandle);
}

} // namespace tsl::Platform
