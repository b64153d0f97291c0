#pragma once

#include "platform/Files.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace tsl
{

/// Reads a file line by line, in pieces of at most LENGTH_MAX bytes: what is longer goes on as a line of
/// its own. A file of any size needs one buffer.
class IniLineReader
{
public:
    static constexpr std::size_t LENGTH_MAX = 499;

    /// A file of more bytes than that cannot be read to its end.
    explicit IniLineReader(std::uint64_t iSizeMax) : m_iLeft(iSizeMax) {}
    ~IniLineReader();
    IniLineReader(IniLineReader const &) = delete;
    IniLineReader & operator=(IniLineReader const &) = delete;

    /// Opens the file, which has to be done first. Returns the system's error number, 0 for success.
    [[nodiscard]] int Open(char const * sName);

    /// The next line up to its first zero byte, with its line end if there is room for it. It holds until
    /// the next call. False at the end of the file and after an error.
    bool Read(std::string_view & sLine);

    /// Whether the file could not be read to its end.
    bool IsFailed() const { return m_bFailed; }

private:
    void Fill();

    Platform::File m_oFile;
    std::unique_ptr<char[]> m_aBuffer;
    std::string_view m_sRest; // of the buffer, yet to be handed out
    std::uint64_t m_iLeft;    // that may still be read
    bool m_bEnd = false;
    bool m_bFailed = false;
};

} // namespace tsl
