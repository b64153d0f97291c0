#pragma once

#include <tessel/Pipe.h>
#include <tessel/String.h>

#include <array>
#include <cstddef>

namespace tsl
{

using LinePipe = DefaultPipe<String, CriticalSectionMutex, CloneByCopyConstructor<String>>;

/// Cuts what a child writes into lines, and queues those that have ended.
class LineSplitter
{
public:
    /// Both must outlive the splitter.
    LineSplitter(LinePipe & oLines, char const * sStream);

    void Take(char const * pBytes, std::size_t iCount);

private:
    void EndLine();

    static constexpr unsigned int LENGTH_USUAL = 128;

    LinePipe & m_oLines;
    char const * m_sStream;
    String m_sLine;
    std::array<bool, 256> m_aEndsLine;
};

} // namespace tsl
