#pragma once

#include "../shared/Output.h"

#include <string>
#include <string_view>

/// Writes a text as the inside of a JSON string. The text may come in pieces.
///
/// A byte that is not valid UTF-8 is read as Latin-1: it becomes the character of the same number, such as \u00ff.
class JsonText
{
public:
    explicit JsonText(Output & oOutput) : m_oOutput(oOutput) {}

    void Write(std::string_view sPiece);

    /// The text is complete; another one may follow.
    void End();

private:
    std::size_t WriteSequence(std::string_view sText);
    void WriteEscaped(unsigned char c);

    Output & m_oOutput;
    std::string m_sTorn; // an incomplete sequence at the end of the last piece
};

/// The text as a JSON string, with its quotes.
void WriteJson(Output & oOutput, std::string_view sText);
