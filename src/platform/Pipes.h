#pragma once

#include "platform/Files.h"

#include <cstddef>

/// Pipes between this process and its children. An int result is the system's error number, 0 for success.
namespace tsl::Platform
{

/// Which end of a pipe stays in this process; the other one is for a child.
enum class OwnEnd
{
    eRead,
    eWrite
};

/// Makes a one-way channel of bytes. Neither end is inherited as it is.
[[nodiscard]] int MakePipe(OwnEnd eOwn, File & oOwnEnd, File & oOtherEnd);

/// Waits for bytes at an own read end and takes up to iCount of them. iRead is 0 if nobody can write any
/// more, or if the other end of oStop is closed and there is nothing to read; oStop may be not open.
[[nodiscard]] int ReadPipe(
    File const & oPipe, File const & oStop, char * pBytes, std::size_t iCount, std::size_t & iRead);

} // namespace tsl::Platform
