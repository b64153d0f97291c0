#pragma once

namespace tsl
{

class Result;
class String;

/// Whether the text of each entry is written alone, or after the texts of all entries written before it.
enum class EHistoryText
{
    eSingle,
    eAccumulated
};

/// Appends the history of a Result, the oldest entry first, and then the Result itself, each on a line of its
/// own in its default layout. Returns s.
String & AppendResultHistory(Result const & oResult, String & s, EHistoryText eText);

} // namespace tsl
