#pragma once

/// Remembers that SIGINT, SIGTERM, SIGHUP or SIGQUIT has come, instead of letting it end the program.
namespace StopSignal
{

/// From here on. SIGHUP stays ignored in a program that was started so, as by nohup.
void Watch();

bool HasCome();

/// Whether SIGINT has come once more, after any of them.
bool IsUrgent();

} // namespace StopSignal
