#pragma once

namespace tsl
{

class Result;
class String;

/// Whether each entry's text in a history stands alone or begins with those of the entries before it.
enum class EHistoryText
{
    eSingle,
    eAccumulated
};

/// Appends the history of a Result from its far end on and then the Result itself, each in its default
/// layout on a line of its own, and returns the text.
String & AppendResultHistory(Result const & oResult, String & s, EHistoryText eText);

} // namespace tsl
