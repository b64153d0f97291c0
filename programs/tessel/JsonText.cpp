#include "JsonText.h"

#include <algorithm>

namespace
{

constexpr std::size_t TORN = std::string_view::npos;

bool IsPlain(char c)
{
    return c >= ' ' && c < 0x7f && c != '"' && c != '\\';
}

/// The number of bytes of the first character if they are valid UTF-8, 0 if they are not, TORN if the text ends too
/// early to know.
std::size_t GetSequenceLength(std::string_view sText)
{
    auto const Byte = [&](std::size_t i) { return static_cast<unsigned char>(sText[i]); };
    unsigned char const iFirst = Byte(0);
    if (iFirst < 0x80)
        return 1;
    if (iFirst < 0xc2 || iFirst > 0xf4)
        return 0;
    std::size_t const iLength = iFirst < 0xe0 ? 2 : iFirst < 0xf0 ? 3 : 4;
    if (sText.size() < 2)
        return TORN;

    // Rejects overlong forms, surrogates and numbers above the largest.
    unsigned char const iLow = iFirst == 0xe0 ? 0xa0 : iFirst == 0xf0 ? 0x90 : 0x80;
    unsigned char const iHigh = iFirst == 0xed ? 0x9f : iFirst == 0xf4 ? 0x8f : 0xbf;
    if (Byte(1) < iLow || Byte(1) > iHigh)
        return 0;
    for (std::size_t i = 2; i < iLength; ++i)
    {
        if (i == sText.size())
            return TORN;
        if (Byte(i) < 0x80 || Byte(i) > 0xbf)
            return 0;
    }
    return iLength;
}

} // namespace

void JsonText::Write(std::string_view sPiece)
{
    // Complete the sequence of the last piece, byte by byte.
    while (!m_sTorn.empty() && !sPiece.empty())
    {
        m_sTorn += sPiece.front();
        sPiece.remove_prefix(1);
        std::size_t iDone = 0;
        while (!m_sTorn.empty() && (iDone = WriteSequence(m_sTorn)) > 0)
            m_sTorn.erase(0, iDone);
    }

    while (!sPiece.empty())
    {
        auto const itPlainEnd = std::find_if_not(sPiece.begin(), sPiece.end(), &IsPlain);
        auto const iPlain = static_cast<std::size_t>(itPlainEnd - sPiece.begin());
        m_oOutput.Write(sPiece.substr(0, iPlain));
        sPiece.remove_prefix(iPlain);
        if (sPiece.empty())
            return;

        std::size_t const iDone = WriteSequence(sPiece);
        if (iDone == 0)
        {
            m_sTorn = sPiece;
            return;
        }
        sPiece.remove_prefix(iDone);
    }
}

void JsonText::End()
{
    for (char const c : m_sTorn)
        WriteEscaped(static_cast<unsigned char>(c));
    m_sTorn.clear();
}

/// Returns the number of bytes that it has consumed; 0 if the first sequence is incomplete.
std::size_t JsonText::WriteSequence(std::string_view sText)
{
    std::size_t const iLength = GetSequenceLength(sText);
    if (iLength == TORN)
        return 0;
    if (iLength > 1 || (iLength == 1 && IsPlain(sText.front())))
    {
        m_oOutput.Write(sText.substr(0, iLength));
        return iLength;
    }
    WriteEscaped(static_cast<unsigned char>(sText.front()));
    return 1;
}

void JsonText::WriteEscaped(unsigned char c)
{
    switch (c)
    {
    case '"':
        return m_oOutput.Write("\\\"");
    case '\\':
        return m_oOutput.Write("\\\\");
    case '\n':
        return m_oOutput.Write("\\n");
    case '\t':
        return m_oOutput.Write("\\t");
    default:
        constexpr char aDigits[] = "0123456789abcdef";
        char const aCode[] = {'\\', 'u', '0', '0', aDigits[c >> 4], aDigits[c & 15]};
        m_oOutput.Write({aCode, sizeof aCode});
    }
}

void WriteJson(Output & oOutput, std::string_view sText)
{
    oOutput.Write("\"");
    JsonText oText(oOutput);
    oText.Write(sText);
    oText.End();
    oOutput.Write("\"");
}
