#pragma once

#include "platform/Files.h"

#include <cstddef>

/// Pipes between this process and its children. An int result is the system's error number, 0 for success.
namespace tsl::Platform
{

/// The end of a pipe that stays in this process. The other end is for a child.
enum class OwnEnd
{
    eRead,
    eWrite
};

/// Creates a one-way pipe. Both ends are close-on-exec.
[[nodiscard]] int MakePipe(OwnEnd eOwn, File & oOwnEnd, File & oOtherEnd);

/// Waits for bytes at an own read end and reads up to iCount of them. iRead is 0 if all write ends are
/// closed, or if there is nothing to read and the other end of oStop is closed. oStop need not be open.
[[nodiscard]] int ReadPipe(
    File const & oPipe, File const & oStop, char * pBytes, std::size_t iCount, std::size_t & iRead);

} // namespace tsl::Platform
