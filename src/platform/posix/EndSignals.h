#pragma once

#include <cstdint>

namespace tsl::Platform
{

/// A set of signals: signal 1 is the lowest bit.
using SignalBits = std::uint64_t;

/// The signals that ask a thread to end. Their handler is EndIfAsked in ForcedEnd.cpp.
class EndSignals
{
public:
    /// Chooses signals that are not in iBlocked, which the thread blocks, and installs the handler.
    void Choose(SignalBits iBlocked);

    bool IsAnyChosen() const { return m_iTimed != 0 || m_iPlain != 0; }

    /// Whether our handler is still installed. The program may have replaced it.
    bool AreKept() const;

    /// Unblocks them in the calling thread.
    void Unblock() const;

    /// The signal for a timer; 0 if there is none.
    int GetTimed() const { return m_iTimed; }

    /// The signal to send directly if there is no timer; 0 if there is none. It is no real-time signal: the
    /// system queues only a limited number of those, possibly none.
    int GetPlain() const { return m_iPlain; }

private:
    int m_iTimed = 0;
    int m_iPlain = 0;
};

/// The signals that a thread blocks. None if the system does not report them.
SignalBits GetBlockedSignals(unsigned long iThreadId);

} // namespace tsl::Platform
