#pragma once

#include "platform/Files.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace tsl
{

/// Reads a file line by line, through one buffer of a fixed size. A line of more than LENGTH_MAX bytes is
/// split into several.
class IniLineReader
{
public:
    static constexpr std::size_t LENGTH_MAX = 499;

    /// Reading fails after iSizeMax bytes.
    explicit IniLineReader(std::uint64_t iSizeMax) : m_iLeft(iSizeMax) {}
    ~IniLineReader();
    IniLineReader(IniLineReader const &) = delete;
    IniLineReader & operator=(IniLineReader const &) = delete;

    /// Opens the file. Call this first. Returns the system's error number, 0 for success.
    [[nodiscard]] int Open(char const * sName);

    /// The next line, truncated at its first zero byte, with its line end if that fits into LENGTH_MAX. Valid
    /// until the next call. False at the end of the file and after an error.
    bool Read(std::string_view & sLine);

    /// Whether reading has failed before the end of the file.
    bool IsFailed() const { return m_bFailed; }

    /// The system's error number of that, 0 if the file is too large.
    int GetError() const { return m_iError; }

private:
    void Fill();

    Platform::File m_oFile;
    std::unique_ptr<char[]> m_aBuffer;
    std::string_view m_sRest; // the part of the buffer that Read has not returned yet
    std::uint64_t m_iLeft;    // bytes that may still be read
    bool m_bZero = false;     // a zero byte is in the buffer; else no line is searched for one (R07)
    bool m_bEnd = false;
    bool m_bFailed = false;
    int m_iError = 0;
};

} // namespace tsl
