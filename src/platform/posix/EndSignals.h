#pragma once

#include <cstdint>

namespace tsl::Platform
{

/// A set of signals, the first one in the lowest bit.
using SignalBits = std::uint64_t;

/// The signals by which a thread is asked to end. ForcedEnd.cpp has their handler.
class EndSignals
{
public:
    /// Chooses them for a thread that blocks the given ones, and handles them.
    void Choose(SignalBits iBlocked);

    bool IsAnyChosen() const { return m_iTimed != 0 || m_iPlain != 0; }

    /// Whether the program has left the signals their handler.
    bool AreKept() const;

    /// Lets them interrupt the calling thread.
    void Unblock() const;

    /// For a timer to send; 0 if there is none.
    int GetTimed() const { return m_iTimed; }

    /// To be sent where no timer can be had; 0 if there is none. It is not a real-time signal, of which the system
    /// keeps a limited number, possibly none.
    int GetPlain() const { return m_iPlain; }

private:
    int m_iTimed = 0;
    int m_iPlain = 0;
};

/// The signals that a thread blocks, as the system reports; none if it does not.
SignalBits GetBlockedSignals(unsigned long iThreadId);

} // namespace tsl::Platform
