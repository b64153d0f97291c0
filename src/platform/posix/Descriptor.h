#pragma once

#include "platform/Files.h"

#include <poll.h>

namespace tsl::Platform
{

/// The descriptors below are those of the three standard streams.
inline constexpr int FIRST_OWN_DESCRIPTOR = 3;

/// What the system calls the file.
inline int GetHandle(File const & oFile)
{
    return static_cast<int>(oFile.iHandle);
}

/// Gives a new descriptor a number above those of the streams. A program that has closed a stream would
/// otherwise take ours for it, and a child's streams could not be put in their places one by one.
[[nodiscard]] int MoveAboveStreams(int & iDescriptor);

/// Waits so many milliseconds, or for ever if they are negative, until one of the descriptors is ready, whatever
/// signals come in between.
[[nodiscard]] int Poll(pollfd * pDescriptors, nfds_t iCount, int iTimeout, bool & bReady);

} // namespace tsl::Platform
