#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

/// A record of a log without its last line end, or one of several pieces of a long record.
struct RecordPiece
{
    std::string_view sText;
    bool bFirst = true;
    bool bLast = true;
};

/// Splits the bytes of a log into records. A record is a line that begins with a time and all lines after it that
/// do not. The lines before the first time are a record, too.
///
/// A record of more than HELD_MAX bytes is returned in pieces, the first of at least that size. So any log needs
/// little more memory than that.
class RecordSplitter
{
public:
    static constexpr std::size_t HELD_MAX = std::size_t{8} << 20;

    /// The space for the next bytes. Pieces that Next has returned are invalid afterwards.
    char * GetSpace(std::size_t & iSpace);

    /// Call it after iCount bytes were written to that space.
    void Add(std::size_t iCount) { m_iEnd += iCount; }

    enum class Ending
    {
        eMayGoOn, ///< the next bytes may belong to the last record
        eEnds     ///< they belong to another record
    };

    /// The next piece, which is valid until GetSpace is called. Returns false if there is none yet.
    bool Next(RecordPiece & oPiece, Ending eEnding);

    /// Whether the bytes end with a line end, or there are none.
    bool IsLineComplete() const { return m_iEnd == m_iBegin || m_aBuffer[m_iEnd - 1] == '\n'; }

private:
    bool Give(std::size_t iEnd, std::size_t iNext, bool bLast, RecordPiece & oPiece);
    bool GivePartOfLong(RecordPiece & oPiece);
    bool GiveRest(RecordPiece & oPiece);

    std::unique_ptr<char[]> m_aBuffer;
    std::size_t m_iSize = 0;
    std::size_t m_iBegin = 0;   // of the record
    std::size_t m_iScanned = 0; // no other record begins before this
    std::size_t m_iEnd = 0;
    bool m_bInside = false; // the first piece of the record was returned
};
