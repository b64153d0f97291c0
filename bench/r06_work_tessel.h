#pragma once

namespace tslbench
{

/// What a receiver does with a message.
void Consume(long iId);

} // namespace tslbench
