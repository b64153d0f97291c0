#pragma once

#include <tessel/Pipe.h>
#include <tessel/String.h>

#include <array>
#include <cstddef>

namespace tsl
{

using LinePipe = DefaultPipe<String, CriticalSectionMutex, CloneByCopyConstructor<String>>;

/// Splits the output of a child into lines and queues each line that has ended. A line for which there is no memory
/// is dropped. One thread at a time uses it.
class LineSplitter
{
public:
    /// Both must outlive the splitter.
    LineSplitter(LinePipe & oLines, char const * sStream);

    void Take(char const * pBytes, std::size_t iCount);

    /// The number of dropped lines, including one that has not ended yet.
    unsigned int GetDroppedLines() const { return m_iDropped; }

private:
    void Append(char const * pBytes, std::size_t iCount);
    void EndLine();
    void Send();
    void Drop();

    static constexpr unsigned int LENGTH_USUAL = 128;

    LinePipe & m_oLines;
    char const * m_sStream;
    String m_sLine;
    bool m_bDropped = false; // the rest of the current line is dropped
    unsigned int m_iDropped = 0;
    std::array<bool, 256> m_aEndsLine;
};

} // namespace tsl
