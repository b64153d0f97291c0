#pragma once

#include "platform/Files.h"

#include <cstddef>
#include <cstdint>

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

/// Tells threads that wait in ReadPipe to return. The owner closes it by CloseStopSignal.
struct StopSignal
{
    std::intptr_t iHandle = -1;

    bool IsOpen() const { return iHandle != -1; }
};

[[nodiscard]] int MakeStopSignal(StopSignal & oSignal);

/// From now on the signal is set. These do nothing to one that is not open.
void SetStopSignal(StopSignal const & oSignal);
void CloseStopSignal(StopSignal & oSignal);

/// Waits for bytes at an own read end and reads up to iCount of them. iRead is 0 if all write ends are
/// closed, or if there is nothing to read and oStop is set. oStop need not be open.
[[nodiscard]] int ReadPipe(
    File const & oPipe, StopSignal const & oStop, char * pBytes, std::size_t iCount, std::size_t & iRead);

} // namespace tsl::Platform
