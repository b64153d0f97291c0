#pragma once

namespace tslbench
{

/// What each receiver of a message does.
void Receive(long iValue);

} // namespace tslbench
