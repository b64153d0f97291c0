#pragma once

/// Records that SIGINT or SIGTERM was sent, and keeps it from ending the program.
namespace StopSignal
{

/// Begins to record.
void Watch();

bool HasCome();

} // namespace StopSignal
