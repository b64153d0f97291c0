#pragma once

#include <tessel/Result.h>

namespace tslbench
{

/// Fails with a text of 30 characters, file and line, if the argument is negative.
tsl::Result Fallible(int iArgument);

/// The same through three more functions, each of which returns the failure.
tsl::Result FallibleThreeDeep(int iArgument);

} // namespace tslbench
