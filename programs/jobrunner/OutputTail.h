#pragma once

#include <cstddef>
#include <deque>
#include <string>

/// The last lines that a job has written.
class OutputTail
{
public:
    static constexpr std::size_t LINES = 20;

    /// The bytes continue the last line unless that has ended.
    void Add(std::string const & sBytes, bool bEndsLine);

    /// The lines as they were written, each with an end. Of very long ones only the last bytes are kept.
    std::string GetText() const;

    /// Empty if there is none.
    std::string const & GetLastLine() const;

private:
    static constexpr std::size_t BYTES_MAX = 16 * 1024;

    std::deque<std::string> m_vLines;
    std::size_t m_iBytes = 0;
    bool m_bLineEnded = true;
};
