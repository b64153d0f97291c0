#pragma once

/// Remembers that SIGINT or SIGTERM has come, instead of letting it end the program.
namespace StopSignal
{

/// From here on.
void Watch();

bool HasCome();

} // namespace StopSignal
