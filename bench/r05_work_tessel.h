#pragma once

namespace tslbench
{

/// What each state does when it is entered and when it is left.
void CountEntry();
void CountExit();

} // namespace tslbench
