#pragma once

#include "platform/Files.h"

#include <poll.h>

namespace tsl::Platform
{

/// Lower descriptors belong to the three standard streams.
inline constexpr int FIRST_OWN_DESCRIPTOR = 3;

/// The file's descriptor.
inline int GetHandle(File const & oFile)
{
    return static_cast<int>(oFile.iHandle);
}

/// Moves a new descriptor above those of the standard streams, and closes the old number. Without this, a
/// program that has closed a standard stream would use ours instead, and dup2 could overwrite a stream that a
/// child still needs.
[[nodiscard]] int MoveAboveStreams(int & iDescriptor);

/// Waits up to iTimeout milliseconds, without limit if it is negative, until a descriptor is ready. Signals
/// do not shorten the wait.
[[nodiscard]] int Poll(pollfd * pDescriptors, nfds_t iCount, int iTimeout, bool & bReady);

} // namespace tsl::Platform
