#pragma once

#include <tessel/Pipe.h>
#include <tessel/String.h>

#include <atomic>
#include <cstddef>

namespace tsl
{

/// The lines that a reader has queued and nobody has taken yet, with a limit beyond which the reader waits.
class LineQueue
{
public:
    LineQueue() = default;

    /// Bytes, 0 for no limit. No reader may be at work.
    void SetLimit(std::size_t iLimit);
    std::size_t GetLimit() const { return m_iLimit; }

    void Send(String const & sLine);

    /// The first line, which the caller deletes, or null.
    String * Receive();
    bool IsEmpty() const { return m_oLines.IsEmpty(); }

    /// Waits until less than the limit is queued, or LiftLimit is called.
    void WaitForRoom();

    /// The reader does not wait any more, until the next SetLimit.
    void LiftLimit();

private:
    /// What a line takes, its place in the queue included.
    static std::size_t GetSize(String const & sLine);

    DefaultPipe<String, CriticalSectionMutex, CloneByCopyConstructor<String>> m_oLines;
    std::size_t m_iLimit = 0;

    // Counted with a limit only, so that others pay nothing for it (R10).
    std::atomic<std::ptrdiff_t> m_iQueued{0};
    std::atomic<unsigned int> m_iChanges{0};
    std::atomic<bool> m_bLifted{false};
};

} // namespace tsl
