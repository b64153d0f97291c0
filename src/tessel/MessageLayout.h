#pragma once

#include <tessel/Export.h>

namespace tsl
{

class DebugMessage;
class Message;
class ResultMessage;
class String;
class Value;

/// Turns a message into text. Its class says which threads may use it.
class TSL_EXPORT MessageLayout
{
public:
    MessageLayout() = default;
    MessageLayout(MessageLayout const &) = default;
    MessageLayout & operator=(MessageLayout const &) = default;
    virtual ~MessageLayout() = default;

    /// Appends the message to sText.
    virtual void FormatMessage(Message const & oMessage, String & sText) const = 0;
};

/// The layout of the log file. A line begins with the local time, as day.month.year hour:minute:second, followed by
///
/// - for a DebugMessage: process id, thread id, "DEB", identifier and text;
/// - for a ResultMessage: "ERR" and, on lines of their own, the history and the Result;
/// - for any other message: name='value' of each element.
///
/// It has no state, so any thread may use it. The line end is added by the caller:
///
///     tsl::String sLine;
///     tsl::DefaultMessageLayout().FormatMessage(oMessage, sLine);
class TSL_EXPORT DefaultMessageLayout : public MessageLayout
{
public:
    void FormatMessage(Message const & oMessage, String & sText) const override;

protected:
    /// Append the text after the time, each for one kind of message.
    void Format(DebugMessage const & oMessage, String & sText) const;
    void Format(ResultMessage const & oMessage, String & sText) const;
    void Format(Message const & oMessage, String & sText) const;

    /// Appends a Result with its history, any other value in its default layout.
    void FormatValue(Value const & oValue, String & sText) const;

    /// Appends the time and a blank.
    void AddTimestamp(String & sText) const;
};

} // namespace tsl
