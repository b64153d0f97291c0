#pragma once

#include <tessel/Pipe.h>
#include <tessel/String.h>

#include <array>
#include <cstddef>

namespace tsl
{

using LinePipe = DefaultPipe<String, CriticalSectionMutex, CloneByCopyConstructor<String>>;

/// Cuts what a child writes into lines, and queues those that have ended. A line for which there is not enough
/// memory is dropped.
class LineSplitter
{
public:
    /// Both must outlive the splitter.
    LineSplitter(LinePipe & oLines, char const * sStream);

    void Take(char const * pBytes, std::size_t iCount);

    /// How many lines were dropped. One that has not ended yet counts.
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
    bool m_bDropped = false; // the line up to its end
    unsigned int m_iDropped = 0;
    std::array<bool, 256> m_aEndsLine;
};

} // namespace tsl
