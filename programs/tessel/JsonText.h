#pragma once

#include "Output.h"

#include <string>
#include <string_view>

/// Writes a text as the inside of a JSON string, in as many pieces as it comes.
///
/// A byte that is no part of valid UTF-8 becomes the character of the same number, such as \u00ff: what is not UTF-8
/// is mostly Latin-1, which this is the reading of.
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
    std::string m_sTorn; // the beginning of a sequence at the end of a piece
};

/// The text as a JSON string, with its quotes.
void WriteJson(Output & oOutput, std::string_view sText);
