#pragma once

#include "platform/windows/System.h"

#include <initializer_list>

namespace tsl::Platform
{

enum class Alert
{
    eIgnored,
    eWakes ///< the wait ends after the thread has run an asynchronous call
};

/// Waits up to iTimeout milliseconds until one of at most two handles is set, and returns its index, or
/// WAIT_TIMEOUT, or WAIT_FAILED. A thread that is asked to end ends here.
DWORD WaitFor(std::initializer_list<HANDLE> oHandles, DWORD iTimeout, Alert eAlert = Alert::eIgnored);

} // namespace tsl::Platform
