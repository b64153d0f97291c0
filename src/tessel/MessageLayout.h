#pragma once

#include <tessel/Export.h>

namespace tsl
{

class DebugMessage;
class Message;
class ResultMessage;
class String;
class Value;

/// Turns a message into one text.
class TSL_EXPORT MessageLayout
{
public:
    MessageLayout() = default;
    MessageLayout(MessageLayout const &) = default;
    MessageLayout & operator=(MessageLayout const &) = default;
    virtual ~MessageLayout() = default;

    /// Appends the message to the text.
    virtual void FormatMessage(Message const & oMessage, String & sText) const = 0;
};

/// The layout of the log file: day.month.year hour:minute:second of the local wall clock, and then
///
/// - for a DebugMessage: process id, thread id, "DEB", identifier and text;
/// - for a ResultMessage: "ERR" and, on lines of their own, the history and the Result;
/// - for any other: name='value' of each element.
///
/// It has no state, so any thread may use it. The local time is worked out once a second on each thread;
/// nothing is allocated but what the text needs to grow.
class TSL_EXPORT DefaultMessageLayout : public MessageLayout
{
public:
    void FormatMessage(Message const & oMessage, String & sText) const override;

protected:
    void Format(DebugMessage const & oMessage, String & sText) const;
    void Format(ResultMessage const & oMessage, String & sText) const;
    void Format(Message const & oMessage, String & sText) const;

    /// A Result is written with its history, any other value in its default layout.
    void FormatValue(Value const & oValue, String & sText) const;

    /// The time and a blank.
    void AddTimestamp(String & sText) const;
};

} // namespace tsl
