#pragma once

namespace tsl::Platform
{

/// Whether a system call only waits, and is restarted from its beginning after a signal. Some processors lack some of
/// the calls.
bool IsRestartedWait(long iCall, unsigned long iSecondArgument);

} // namespace tsl::Platform
