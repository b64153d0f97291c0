#pragma once

#include "LineQueue.h"

#include <tessel/String.h>

#include <array>
#include <cstddef>

namespace tsl
{

/// What ends a line.
enum class LineEnd
{
    eControlCharacter, ///< any control character; empty lines and a last line without an end are not queued
    eLineFeed          ///< a line feed only; all lines are queued
};

/// Cuts what a child writes into lines and queues them. A line for which there is not enough memory is dropped.
class LineSplitter
{
public:
    /// A line of more than iLengthMax bytes comes in pieces; 0 for no limit. Queue and name must outlive the splitter.
    LineSplitter(LineQueue & oLines, char const * sStream, LineEnd eLineEnd, std::size_t iLengthMax);

    void Take(char const * pBytes, std::size_t iCount);

    /// Nothing more comes.
    void Finish();

    /// How many lines were dropped. One that has not ended yet counts.
    unsigned int GetDroppedLines() const { return m_iDropped; }

private:
    void Append(char const * pBytes, std::size_t iCount);
    void AppendPiece(char const * pBytes, std::size_t iCount);
    void EndLine();
    void Send();
    void Drop();

    static constexpr unsigned int LENGTH_USUAL = 128;

    LineQueue & m_oLines;
    char const * m_sStream;
    LineEnd m_eLineEnd;
    std::size_t m_iLengthMax;
    String m_sLine;
    bool m_bDropped = false; // the rest of the line is skipped
    bool m_bBegun = false;   // a piece of the line is queued
    unsigned int m_iDropped = 0;
    std::array<bool, 256> m_aEndsLine;
};

} // namespace tsl
