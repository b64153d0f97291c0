#pragma once

#include <tessel/Result.h>

#include <string>
#include <string_view>

/// Writes to the standard output in large pieces. After a failure it writes nothing more.
class Output
{
public:
    Output() { m_sBuffer.reserve(SIZE); }

    /// Appends to the buffer, which is written when it is full. A large text is not copied.
    void Write(std::string_view sText)
    {
        if (sText.size() > SIZE - m_sBuffer.size())
            return WriteLarge(sText);
        m_sBuffer += sText;
    }

    void Flush();

    /// Whether a write has failed, also because nobody reads the output any more.
    bool IsFailed() const { return m_iError != 0; }

    /// Whether nobody reads the output any more.
    bool IsUnread() const;

    /// Flushes. Code 1 if a write has failed, but not if nobody reads the output any more.
    [[nodiscard]] tsl::Result Finish();

private:
    static constexpr std::size_t SIZE = 65536;

    void WriteLarge(std::string_view sText);
    void WriteNow(std::string_view sText);

    std::string m_sBuffer;
    int m_iError = 0;
};
