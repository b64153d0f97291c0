#pragma once

#include <tessel/Export.h>

namespace tsl
{

class Message;

/// Says which messages a waiting task accepts; the others are discarded. See Task::ReceiveFilter.
///
///     class AlarmFilter : public tsl::MessageFilter
///     {
///         bool Match(tsl::Message const & oMessage) const override { return dynamic_cast<Alarm const *>(&oMessage); }
///     };
///
/// Filters are copied as values. One thread at a time uses a filter unless its class says otherwise.
class TSL_EXPORT MessageFilter
{
public:
    MessageFilter(MessageFilter const &) = default;
    MessageFilter & operator=(MessageFilter const &) = default;
    virtual ~MessageFilter() = default;

    /// Returns whether the message is accepted.
    virtual bool Match(Message const & oMessage) const = 0;

protected:
    MessageFilter() = default;
};

/// Accepts no message. Any thread may use it.
class TSL_EXPORT MessageFilterNoMessage : public MessageFilter
{
public:
    bool Match(Message const & oMessage) const override;
};

/// Accepts every message. Any thread may use it.
class TSL_EXPORT MessageFilterAllMessages : public MessageFilter
{
public:
    bool Match(Message const & oMessage) const override;
};

} // namespace tsl
