#pragma once

#include <tessel/Result.h>

#include <string>
#include <string_view>

/// The standard output, in large pieces. After a failure nothing more is written.
class Output
{
public:
    Output() { m_sBuffer.reserve(SIZE); }

    /// Appends to the piece, which is written when it is full. A large text is not copied.
    void Write(std::string_view sText)
    {
        if (sText.size() > SIZE - m_sBuffer.size())
            return WriteLarge(sText);
        m_sBuffer += sText;
    }

    void Flush();

    /// Whether nobody reads the output any more or it cannot be written.
    bool IsFailed() const { return m_iError != 0; }

    /// Flushes. Code 1 if something could not be written; no failure if nobody wanted to read it.
    [[nodiscard]] tsl::Result Finish();

private:
    static constexpr std::size_t SIZE = 65536;

    void WriteLarge(std::string_view sText);
    void WriteNow(std::string_view sText);

    std::string m_sBuffer;
    int m_iError = 0;
};
