#pragma once

#include <tessel/Result.h>

namespace tslbench
{

/// Fails with a text of 30 characters, file and line, if the argument is negative.
tsl::Result Fallible(int iArgument);

/// The same behind three levels that each pass the failure on.
tsl::Result FallibleThreeDeep(int iArgument);

} // namespace tslbench
