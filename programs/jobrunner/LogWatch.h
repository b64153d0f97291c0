#pragma once

namespace tsl
{
class Message;
}

/// Whether what this program reports really reaches Logfile.txt. The library writes to it, and does not tell if it
/// cannot.
namespace LogWatch
{

/// Looks up the file that the library has opened.
void Begin();

/// Dispatches a message on the global bus.
void Dispatch(tsl::Message const & oMessage);

/// Whether there is no log file, or messages since the last call have not made it longer. From then on it is lost,
/// since the library gives up as well.
bool IsLost();

} // namespace LogWatch
