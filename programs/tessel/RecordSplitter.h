#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

/// A record of a log, or one of several pieces of a long one, without the line end behind the record.
struct RecordPiece
{
    std::string_view sText;
    bool bFirst = true;
    bool bLast = true;
};

/// Splits a log into records, as its bytes come: a record is a line that begins with a time and all lines behind it
/// that do not. What stands before the first time is a record, too.
///
/// A record of more than HELD_MAX bytes comes in pieces, the first of at least that size. So a log of any shape
/// takes little more memory than that.
class RecordSplitter
{
public:
    static constexpr std::size_t HELD_MAX = std::size_t{8} << 20;

    /// The room for the bytes to come. What Next has given is gone then.
    char * GetSpace(std::size_t & iSpace);

    /// So many bytes have been put there.
    void Add(std::size_t iCount) { m_iEnd += iCount; }

    enum class Ending
    {
        eMayGoOn, ///< the bytes to come may belong to the last record
        eEnds     ///< they do not
    };

    /// The next piece, which holds until GetSpace; false if there is none yet.
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
    std::size_t m_iScanned = 0; // no other record begins in front of this
    std::size_t m_iEnd = 0;
    bool m_bInside = false; // a first piece of the record has been given
};
